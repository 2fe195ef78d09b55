return Window {
    name = "column", text = "VertLayout", size = {240, 196},
    layout = VertLayout { gap = 8, horzAlign = "stretch", vertAlign = "middle" },

    Button { text = "One" },
    Button { text = "Two" },
    Button { text = "Three" },
}
