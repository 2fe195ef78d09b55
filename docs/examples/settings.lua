local function say(self, text)
    self.window:find("status").text = text
end

return Window {
    name = "settings", text = "Settings", size = {360, 224}, resizable = true,
    layout = VertLayout { gap = 16, horzAlign = "stretch" },
    hotKeys = { ["ctrl+s"] = function(self) say(self, "Saved.") end },

    Panel {
        insets = 16,
        layout = FormLayout { horzGap = 16, vertGap = 12 },
        Static "Sound",
        CheckBox { name = "sound", text = "On", checked = true, tabOrder = 1 },
        Static "Volume",
        HorzScrollBar {
            name = "volume", size = {180, 16}, range = {0, 110}, thumbValue = 10, value = 70,
            onChange = function(self) say(self, "Volume " .. self.value) end,
        },
    },
    Static { name = "status", text = "Ctrl+S saves." },
}
