local big, color = 2147483647, "0xffffffff"
local sizes = { horz = big, vert = big }
local sides = { left = -big, top = big, right = big, bottom = -big }
local look = { bkg = { file = "tests/graphics/picture.png", insets = sides, rect = { x1 = -big, y1 = -big, x2 = big, y2 = big }, center_center = color },
    text = { font = "fonts/Inter-Regular.otf", fontSize = big, lineHeight = -big, blur = big, color = color, blurColor = color, shadowColor = color,
    shadowOffset = sizes, lineThroughColor = color, lineThroughHeight = big, horzAlign = { type = "right", offset = big } },
    picture = { file = "tests/graphics/picture.png", color = color, size = sizes, tileHorizontally = true, tileVertically = true, userTexSampler = big } }
local t = { skinData = { params = { minSize = sizes, insets = sides, clipInsets = sides, textWrapping = true, useEllipsis = true,
    focusRectInsets = sides, focusRectColor = color, headerHeight = big, startTime = 0 / 0, duration = 1 / 0 },
    states = { released = { look, [big] = look, [-1] = look, [0.5] = look }, disabled = { look } }, skins = {} } }
Skin = setmetatable({}, { __index = function() return function() return t end end })
