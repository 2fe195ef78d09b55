return Window {
    name = "row", text = "HorzLayout", size = {380, 118},
    layout = HorzLayout { gap = 8, horzAlign = "stretch", vertAlign = "center" },

    Button { text = "One" },
    Button { text = "Two", minSize = {150, 0} },
    Button { text = "Three" },
}
