local function page(name, visible, ...)
    local panel = Panel { name = name, visible = visible, position = {16, 60}, size = {308, 84}, ... }
    panel.layout = VertLayout { gap = 8 }
    return panel
end

local function tab(number, text, selected)
    return TabGroupItem {
        text = text, state = selected, position = {16 + 104 * (number - 1), 16}, size = {100, 36},
        onShow = function(self) self.window:find(text).visible = true end,
        onHide = function(self) self.window:find(text).visible = false end,
    }
end

return Window {
    name = "tabs", text = "Tabs", size = {352, 210},

    tab(1, "Picture", true), tab(2, "Sound"),
    page("Picture", true, CheckBox { text = "Shadows", checked = true }, CheckBox { text = "Reflections" }),
    page("Sound", false, CheckBox { text = "Music" }, CheckBox { text = "Voices", checked = true }),
}
