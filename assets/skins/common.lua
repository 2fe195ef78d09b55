-- What the default skins share: the shapes. dark.lua and light.lua give the colours. Returns a function that takes a
-- palette and returns the table of skins. Every table is built once, here, and no skin function changes one.
local parts = dofile("atlas/parts.lua")
local picture = "atlas/parts.png"

local fonts = {
    regular = "fonts/Inter-Regular.otf",
    medium = "fonts/Inter-Medium.otf",
    strong = "fonts/Inter-SemiBold.otf",
}
local fontSize = 14
local stateNames = { "released", "hover", "pressed", "disabled" }

local function insets(left, top, right, bottom)
    return { left = left, top = top or left, right = right or left, bottom = bottom or top or left }
end

local function size(horz, vert)
    return { horz = horz, vert = vert }
end

local function align(word, offset)
    return { type = word, offset = offset or 0 }
end

-- The fixed borders of the parts that stretch.
local partInsets = {
    windowBright = insets(16), windowDim = insets(16), tooltip = insets(12),
    header = insets(8, 8, 8, 1), footer = insets(8, 0, 8, 8), tab = insets(8, 8, 8, 2), thumb = insets(6),
    buttonBright = insets(8), buttonDim = insets(8), panelBright = insets(8), panelDim = insets(8),
    fill = insets(8), tonal = insets(8), inner = insets(10),
}

-- The colour that turns a surface of grey `level` into `color`, a string 0xRRGGBBAA.
local function tint(color, level)
    local channels = {}
    for index = 1, 3 do
        local value = tonumber(color:sub(1 + 2 * index, 2 + 2 * index), 16) / level
        channels[index] = string.format("%02x", math.min(255, math.floor(value + 0.5)))
    end
    return "0x" .. table.concat(channels) .. color:sub(9, 10)
end

local rows = { "top", "center", "bottom" }
local columns = { "left", "center", "right" }

local function fillCells(info, color, bottomColor)
    for _, row in ipairs(rows) do
        for _, column in ipairs(columns) do
            info[column .. "_" .. row] = row == "bottom" and bottomColor or color
        end
    end
    return info
end

-- A background made of the part `name`, its surface in `color`; the bottom border may have a colour of its own.
local function surface(name, color, bottomColor)
    local part = parts[name]
    return fillCells({ file = picture, rect = part.rect, insets = partInsets[name] }, tint(color, part.level), bottomColor)
end

-- A rectangle in one colour, with a border of one unit in another where that is given.
local function plain(color, borderColor)
    local info = fillCells({ insets = insets(borderColor and 1 or 0) }, borderColor or color)
    info.center_center = color
    return info
end

local function image(name, color, horzAlign)
    return {
        file = picture, rect = parts[name].rect, color = color,
        horzAlign = horzAlign or align("center"), vertAlign = align("center"),
    }
end

local function text(color, font, horzAlign)
    return {
        font = font or fonts.regular, fontSize = fontSize, color = color,
        horzAlign = horzAlign or align("left"), vertAlign = align("center"),
    }
end

-- Makes the "states" table: look(state, inner) is asked for each interactive state and each inner state up to `inners`.
local function states(inners, look)
    local result = {}
    for _, state in ipairs(stateNames) do
        result[state] = {}
        for inner = 1, inners do
            result[state][inner] = look(state, inner)
        end
    end
    return result
end

local function skin(params, stateTable, skins)
    return { skinData = { params = params, states = stateTable, skins = skins } }
end

return function(colors)
    local function bordered(name)
        return name .. colors.edge
    end

    local center = align("center")
    local controlInsets = insets(14, 7, 14, 8)
    local controlParams = {
        minSize = size(24, 24), insets = controlInsets, focusRectInsets = insets(3), focusRectColor = colors.focus,
    }

    -- A surface with a caption: what push buttons look like, and toggle buttons while they are off.
    local function control(state)
        return {
            -- Pressed it is sunk in: without the lit edge.
            bkg = surface(bordered(state == "pressed" and "panel" or "button"), colors.control[state]),
            text = text(colors.controlText[state], fonts.medium, center),
        }
    end

    -- The same, chosen.
    local function chosen(state)
        return {
            bkg = surface("fill", colors.accent[state]),
            text = text(colors.accentText[state], fonts.medium, center),
        }
    end

    -- An outline in the accent colour.
    local function outlined(state)
        return {
            bkg = surface("tonal", colors.outline[state]),
            text = text(colors.outlineText[state], fonts.medium, center),
        }
    end

    local function label(state)
        return { text = text(state == "disabled" and colors.textDisabled or colors.text) }
    end

    -- Windows. The background has 5 units of shadow and a border around header and view. The close button fills the
    -- right end of the header, outside the header's insets, so that neither the title nor dragging reaches under it.
    local closeSize = 33
    local closeButton = skin(
        { focusRectColor = colors.focus },
        states(1, function(state)
            return {
                bkg = state ~= "released" and state ~= "disabled" and surface("inner", colors.closeFill[state]) or nil,
                picture = image("cross", colors.closeCross[state]),
            }
        end))

    local header = skin(
        {
            insets = insets(0, 0, closeSize, 1), useEllipsis = true, focusRectColor = colors.focus,
            hasCloseButton = true, closeButtonText = "",
            closeButtonHorzAlign = align("right", closeSize), closeButtonVertAlign = center,
        },
        states(2, function(state, inner)
            local look = colors.header[state == "disabled" and "disabled" or "released"][inner]
            return {
                bkg = surface("header", look.fill, look.line),
                text = text(look.title, fonts.strong, align("left", 16)),
            }
        end),
        { closeButton = closeButton })

    local view = skin(
        { insets = insets(16), focusRectColor = colors.focus },
        { disabled = { [1] = { bkg = surface("footer", colors.windowDisabled) } } })

    local function window()
        return skin(
            { minSize = size(96, 52), insets = insets(6), headerHeight = closeSize + 1, focusRectColor = colors.focus },
            states(2, function(state)
                local fill = state == "disabled" and colors.windowDisabled or colors.window
                return { bkg = surface(bordered("window"), fill) }
            end),
            { header = header, view = view })
    end

    -- Check boxes and radio buttons. The picture lies below the check and is seen through its mark.
    local function checked(shape, marks)
        return skin(
            { insets = insets(0, 3, 6, 3), focusRectInsets = insets(3, 0, 0, 0), focusRectColor = colors.focus,
              checkSize = 18, checkGap = 8, pictureSize = 18, pictureGap = 8 },
            states(3, function(state, inner)
                local off = inner == 1
                local left = align("left", -1) -- the cells have a unit of air around the box
                return {
                    picture = image(shape .. (off and "Fill" or "Core"),
                        off and colors.field[state] or colors.accentText[state], left),
                    check = image(shape .. marks[inner], off and colors.fieldRing[state] or colors.accent[state], left),
                    text = text(state == "disabled" and colors.textDisabled or colors.text, nil, align("left", 26)),
                }
            end))
    end

    -- Scroll bars.
    local function scrollButton(name)
        return skin({}, states(1, function(state)
            return {
                bkg = state ~= "released" and state ~= "disabled" and surface("fill", colors.control[state]) or nil,
                picture = image(name, colors.scrollArrow[state]),
            }
        end))
    end

    local function scrollBar(horizontal, hasButtons)
        local thumb = skin(
            { minSize = horizontal and size(28, 0) or size(0, 28) },
            states(1, function(state) return { bkg = surface("thumb", colors.thumb[state]) } end))
        return skin(
            {
                hasButtons = hasButtons, thumbAlign = center, increaseButtonAlign = center,
                decreaseButtonAlign = center, focusRectColor = colors.focus,
            },
            states(1, function(state)
                return { bkg = surface("fill", state == "disabled" and colors.trackDisabled or colors.track) }
            end),
            {
                thumb = thumb,
                decreaseButton = scrollButton(horizontal and "arrowLeft" or "arrowUp"),
                increaseButton = scrollButton(horizontal and "arrowRight" or "arrowDown"),
            })
    end

    local function panelBkg(state)
        return surface(bordered("panel"), state == "disabled" and colors.panelDisabled or colors.panel)
    end

    local skins = {
        windowSkin = window(),
        modalWindowSkin = window(),

        tooltipSkin = skin(
            { insets = insets(14, 9, 14, 10), textWrapping = true, startTime = 0.5, duration = 4, offset = size(0, 20) },
            states(1, function(state)
                return {
                    bkg = surface("tooltip", colors.tooltip),
                    text = text(state == "disabled" and colors.tooltipTextDisabled or colors.tooltipText),
                }
            end)),

        debugSkin = skin({}, states(1, function(state) return { bkg = plain("0x00000000", colors.debug[state]) } end)),

        buttonSkin = skin(controlParams, states(1, control)),

        toggleButtonSkin = skin(controlParams, states(3, function(state, inner)
            return (inner == 1 and control or inner == 2 and chosen or outlined)(state)
        end)),

        switchButtonSkin = skin(controlParams, states(3, function(state, inner)
            if inner > 1 then
                return (inner == 2 and chosen or outlined)(state)
            end
            return {
                bkg = surface("fill", colors.segment[state]),
                text = text(colors.segmentText[state], fonts.medium, center),
            }
        end)),

        checkBoxSkin = checked("box", { "Ring", "Check", "Dash" }),
        radioButtonSkin = checked("radio", { "Ring", "Dot", "Dash" }),

        staticSkin = skin({ focusRectColor = colors.focus }, states(1, label)),

        animatedColorStaticSkin = skin(
            {
                focusRectColor = colors.focus,
                textColorAppearDuration = 0.3, textColorShowDuration = 1, textColorDisappearDuration = 1.5,
                imageColorAppearDuration = 0.3, imageColorShowDuration = 1, imageColorDisappearDuration = 1.5,
            },
            states(1, label)),

        tabGroupItemSkin = skin(
            { minSize = size(24, 24), insets = controlInsets, focusRectInsets = insets(3), focusRectColor = colors.focus },
            states(2, function(state, inner)
                local look = colors.tab[state][inner]
                return {
                    bkg = look.fill and surface("tab", look.fill, look.line) or nil,
                    text = text(look.text, fonts.medium, center),
                }
            end)),

        panelSkin = skin(
            { insets = insets(8), focusRectColor = colors.focus },
            states(1, function(state) return { bkg = panelBkg(state) } end)),

        horzScrollBarSkin = scrollBar(true, true),
        vertScrollBarSkin = scrollBar(false, true),

        scrollPaneSkin = skin(
            {
                insets = insets(4), clipInsets = insets(1), focusRectColor = colors.focus,
                vertScrollBarWidth = 12, horzScrollBarHeight = 12, pixelsPerWheelClick = 40,
            },
            states(1, function(state) return { bkg = panelBkg(state) } end),
            { vertScrollBar = scrollBar(false, false), horzScrollBar = scrollBar(true, false) }),
    }

    local functions = {}
    for name, skinTable in pairs(skins) do
        functions[name] = function() return skinTable end
    end
    return functions
end
