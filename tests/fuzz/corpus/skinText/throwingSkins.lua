Skin = setmetatable({}, { __index = function(_, name) return function() error(name) end end })
