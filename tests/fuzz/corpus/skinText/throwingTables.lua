local bad = setmetatable({}, { __index = function(_, key) error(key) end })
local t = { skinData = { params = bad, states = { released = { bad, { bkg = bad, text = bad, picture = bad } } }, skins = { header = bad } } }
Skin = { windowSkin = function() return t end, staticSkin = function() return t end }
