local base = {bkg = {file = "a.png", rect = {x1 = 0, y1 = 0, x2 = 8, y2 = 8}}, text = {color = {r = 1, g = 1, b = 1, a = 1}}}
Skin = {
    buttonSkin = function() return {[1] = {released = base, hover = base}} end,
    odd = setmetatable({}, {__index = function(t, k) error(k) end}),
}
