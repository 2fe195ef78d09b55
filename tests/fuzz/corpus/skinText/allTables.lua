local all = {}
all[1] = all
setmetatable(all, { __index = function() return all end })
Skin = setmetatable({}, { __index = function() return function() return all end end })
