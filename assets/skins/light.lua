-- The light default skin: a palette over the shapes of common.lua. Colours are 0xRRGGBBAA.
SkinTablesConstant = true

Skin = dofile("skins/common.lua") {
    edge = "Dim", -- borders are darker than what they enclose

    text = "0x1b2029ff",
    textDisabled = "0x6e7683ff",
    focus = "0x6aa1ffff",

    window = "0xf5f6f8ff",
    windowDisabled = "0xe2e5e9ff",
    header = { -- by inner state: 1 in the background, 2 focused
        released = {
            { fill = "0xe6e9eeff", line = "0xd3d8dfff", title = "0x566070ff" },
            { fill = "0xffffffff", line = "0x2563d9ff", title = "0x1b2029ff" },
        },
        disabled = {
            { fill = "0xd5d9dfff", line = "0xc3c8d0ff", title = "0x626a77ff" },
            { fill = "0xebedf0ff", line = "0xa9b0bbff", title = "0x6e7683ff" },
        },
    },
    closeFill = { hover = "0xd9dfe8ff", pressed = "0x2563d9ff" },
    closeCross = { released = "0x566070ff", hover = "0x1b2029ff", pressed = "0xffffffff", disabled = "0xa3aab5ff" },

    panel = "0xffffffff",
    panelDisabled = "0xe8eaedff",
    tooltip = "0x2b313cff",
    tooltipText = "0xf4f6f9ff",
    tooltipTextDisabled = "0x8f97a5ff",

    control = { released = "0xffffffff", hover = "0xe3e9f3ff", pressed = "0xc9d3e2ff", disabled = "0xecedf0ff" },
    controlText = { released = "0x1b2029ff", hover = "0x1b2029ff", pressed = "0x1b2029ff", disabled = "0x6e7683ff" },

    accent = { released = "0x2563d9ff", hover = "0x1d4fb8ff", pressed = "0x143a89ff", disabled = "0xb9c8e6ff" },
    accentText = { released = "0xffffffff", hover = "0xffffffff", pressed = "0xffffffff", disabled = "0x5b6579ff" },

    outline = { released = "0x2563d9ff", hover = "0x143a89ff", pressed = "0x5f8feaff", disabled = "0x8aa5d8ff" },
    outlineText = { released = "0x1d4fb8ff", hover = "0x143a89ff", pressed = "0x1d4fb8ff", disabled = "0x6e7683ff" },

    segment = { released = "0xe3e6ebff", hover = "0xd0d6dfff", pressed = "0xb9c2cfff", disabled = "0xf0f1f3ff" },
    segmentText = { released = "0x454e5cff", hover = "0x1b2029ff", pressed = "0x1b2029ff", disabled = "0x6e7683ff" },

    field = { released = "0xffffffff", hover = "0xe3e9f3ff", pressed = "0xc9d3e2ff", disabled = "0xecedf0ff" },
    fieldRing = { released = "0x858e9cff", hover = "0x5f6a7bff", pressed = "0x3f4a5bff", disabled = "0xb7bdc7ff" },

    tab = { -- by inner state: 1 the others, 2 the selected one
        released = { { text = "0x566070ff" }, { fill = "0xffffffff", line = "0x2563d9ff", text = "0x1b2029ff" } },
        hover = {
            { fill = "0xe3e6ebff", line = "0xe3e6ebff", text = "0x1b2029ff" },
            { fill = "0xe3e9f3ff", line = "0x143a89ff", text = "0x1b2029ff" },
        },
        pressed = {
            { fill = "0xc9d3e2ff", line = "0xc9d3e2ff", text = "0x1b2029ff" },
            { fill = "0xc9d3e2ff", line = "0x2563d9ff", text = "0x1b2029ff" },
        },
        disabled = { { text = "0x6e7683ff" }, { fill = "0xecedf0ff", line = "0xa9b0bbff", text = "0x6e7683ff" } },
    },

    track = "0xe3e6ebff",
    trackDisabled = "0xf3f4f6ff",
    thumb = { released = "0xaab2beff", hover = "0x7f8998ff", pressed = "0x2563d9ff", disabled = "0xd0d5dcff" },
    scrollArrow = { released = "0x566070ff", hover = "0x1b2029ff", pressed = "0x1b2029ff", disabled = "0xb0b7c1ff" },

    debug = { released = "0x0891b2c0", hover = "0xca8a04ff", pressed = "0xe11d48ff", disabled = "0x64748ba0" },
}
