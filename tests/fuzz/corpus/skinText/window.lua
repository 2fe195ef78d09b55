SkinTablesConstant = true
local function look(c) return { bkg = { center_center = c, insets = { left = 1, top = 1, right = 1, bottom = 1 } },
    text = { font = "fonts/Inter-Medium.otf", fontSize = 14, color = "0xe8ebf0ff", horzAlign = { type = "center" } },
    picture = { file = "tests/graphics/picture.png", color = "0xffffffff", tileHorizontally = true } } end
local part = { skinData = { params = { insets = { left = 4, top = 4, right = 4, bottom = 4 }, minSize = { horz = 8, vert = 8 },
    textWrapping = true, focusRectColor = "0xff0000ff", clipInsets = { left = 1 } },
    states = { released = { look("0x363e4bff") }, hover = { look("0x495467ff") }, disabled = { look("0x10101080") } }, skins = {} } }
local window = { skinData = { params = { headerHeight = 24 }, states = { released = { look("0x20242cff"), look("0x30343cff") } },
    skins = { header = { skinData = { params = { hasCloseButton = true, closeButtonText = "x", closeButtonHorzAlign = { type = "right", offset = -5 } },
    states = { released = { look("0x20242cff") } }, skins = { closeButton = part } } }, view = part } } }
Skin = { windowSkin = function() return window end, staticSkin = function() return part end, panelSkin = function() return part end,
    checkBoxSkin = function() return part end, toggleButtonSkin = function() return part end, tooltipSkin = function() return part end,
    skin = function() return part end }
