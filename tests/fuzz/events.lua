-- A small skin for the fuzzer: every part that the default skins have, but no pictures, so that a run begins at once.
local function look()
    return { text = { font = "fonts/Inter-Regular.otf", fontSize = 12, color = "0xffffffff" } }
end

local function skin(params, skins)
    local states = {}
    for _, state in ipairs({ "released", "hover", "pressed", "disabled" }) do
        states[state] = { look(), look(), look() }
    end
    return { skinData = { params = params, states = states, skins = skins } }
end

local edge = { left = 4, top = 4, right = 4, bottom = 4 }
local window = {
    skinData = {
        params = { headerHeight = 28, insets = edge },
        skins = {
            header = { skinData = {
                params = { insets = edge, hasCloseButton = true, closeButtonText = "x" },
                skins = { closeButton = skin({}) },
            } },
            view = skin({ minSize = { horz = 30, vert = 30 } }),
        },
    },
}

Skin = {
    windowSkin = function() return window end,
    modalWindowSkin = function() return window end,
    tooltipSkin = function() return skin({ insets = edge, startTime = 0.5, duration = 4, textWrapping = true }) end,
}
local plain = skin({ insets = edge, focusRectColor = "0xff80ffff", minSize = { horz = 8, vert = 8 } })
for _, name in ipairs({ "buttonSkin", "toggleButtonSkin", "switchButtonSkin", "checkBoxSkin", "radioButtonSkin",
                        "staticSkin", "animatedColorStaticSkin", "tabGroupItemSkin", "panelSkin", "debugSkin" }) do
    Skin[name] = function() return plain end
end
