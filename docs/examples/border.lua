local function place(text)
    return Button { text = text, minSize = {72, 32} }
end

return Window {
    name = "border", text = "BorderLayout", size = {380, 250},
    layout = VertLayout { horzAlign = "stretch", vertAlign = "stretch" },

    Panel {
        bkgLook = false, insets = 0,
        layout = BorderLayout { horzGap = 8, vertGap = 8 },
        place "north", place "south", place "centre", place "west", place "east",
    },
}
