-- The dark default skin: a palette over the shapes of common.lua. Colours are 0xRRGGBBAA.
SkinTablesConstant = true

Skin = dofile("skins/common.lua") {
    edge = "Bright", -- borders are lighter than what they enclose

    text = "0xe8ebf0ff",
    textDisabled = "0x8a92a0ff",
    focus = "0x8fb9ffff",

    window = "0x20242cff",
    windowDisabled = "0x31363fff",
    header = { -- by inner state: 1 in the background, 2 focused
        released = {
            { fill = "0x272c35ff", line = "0x171a20ff", title = "0xa9b1beff" },
            { fill = "0x39414fff", line = "0x5b94f5ff", title = "0xf4f6f9ff" },
        },
        disabled = {
            { fill = "0x31363fff", line = "0x262a32ff", title = "0x8a92a0ff" },
            { fill = "0x444b57ff", line = "0x5a6270ff", title = "0xa1a8b5ff" },
        },
    },
    closeFill = { hover = "0x586376ff", pressed = "0x2a62ccff" },
    closeCross = { released = "0xb9c0ccff", hover = "0xffffffff", pressed = "0xffffffff", disabled = "0x6b7381ff" },

    panel = "0x191c22ff",
    panelDisabled = "0x2b3039ff",
    tooltip = "0x3d4656ff",
    tooltipText = "0xf4f6f9ff",
    tooltipTextDisabled = "0x9fa7b5ff",

    control = { released = "0x363e4bff", hover = "0x495467ff", pressed = "0x191d24ff", disabled = "0x2a2f38ff" },
    controlText = { released = "0xe8ebf0ff", hover = "0xffffffff", pressed = "0xe8ebf0ff", disabled = "0x8a92a0ff" },

    accent = { released = "0x2a62ccff", hover = "0x306ee2ff", pressed = "0x1f4c9fff", disabled = "0x2f3f5cff" },
    accentText = { released = "0xffffffff", hover = "0xffffffff", pressed = "0xffffffff", disabled = "0x99a3b4ff" },

    outline = { released = "0x5b94f5ff", hover = "0x9dc1ffff", pressed = "0x3a6fd0ff", disabled = "0x4f6691ff" },
    outlineText = { released = "0x9dc1ffff", hover = "0xd3e3ffff", pressed = "0x9dc1ffff", disabled = "0x8a92a0ff" },

    segment = { released = "0x2a303aff", hover = "0x3f4857ff", pressed = "0x0e1014ff", disabled = "0x23272fff" },
    segmentText = { released = "0xb9c0ccff", hover = "0xe8ebf0ff", pressed = "0xe8ebf0ff", disabled = "0x8a92a0ff" },

    field = { released = "0x14171cff", hover = "0x2c333fff", pressed = "0x434c5cff", disabled = "0x262b33ff" },
    fieldRing = { released = "0x7b8494ff", hover = "0xa3adbdff", pressed = "0xd0d6e0ff", disabled = "0x4d5461ff" },

    tab = { -- by inner state: 1 the others, 2 the selected one
        released = { { text = "0xa9b1beff" }, { fill = "0x363e4bff", line = "0x5b94f5ff", text = "0xffffffff" } },
        hover = {
            { fill = "0x2c333fff", line = "0x2c333fff", text = "0xe8ebf0ff" },
            { fill = "0x495467ff", line = "0x9dc1ffff", text = "0xffffffff" },
        },
        pressed = {
            { fill = "0x191d24ff", line = "0x191d24ff", text = "0xe8ebf0ff" },
            { fill = "0x191d24ff", line = "0x5b94f5ff", text = "0xffffffff" },
        },
        disabled = { { text = "0x8a92a0ff" }, { fill = "0x2a2f38ff", line = "0x5a6270ff", text = "0x8a92a0ff" } },
    },

    track = "0x14171cff",
    trackDisabled = "0x262b33ff",
    thumb = { released = "0x4d5667ff", hover = "0x6a758aff", pressed = "0x5b94f5ff", disabled = "0x363c47ff" },
    scrollArrow = { released = "0xa9b1beff", hover = "0xffffffff", pressed = "0xffffffff", disabled = "0x5a6270ff" },

    debug = { released = "0x22d3eec0", hover = "0xfacc15ff", pressed = "0xf43f5eff", disabled = "0x94a3b8a0" },
}
