Skin = setmetatable({}, { __index = function() return function() while true do end end end })
