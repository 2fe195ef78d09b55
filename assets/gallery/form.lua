-- FormLayout: captions and what they caption, in two columns.
local parts = include "parts.lua"

local function say(self, text)
    self.window:find("result").text = text
end

return Window {
    name = "form", text = "Form", size = {420, 292}, resizable = true,
    layout = VertLayout { gap = 16, horzAlign = "stretch" },
    hotKeys = { ["ctrl+s"] = function(self) say(self, "Saved by Ctrl+S") end },

    Panel {
        insets = 16,
        layout = FormLayout { horzGap = 20, vertGap = 12, captionsAlign = {"right", "middle"} },
        Static "Units",
        parts.group {
            layout = HorzLayout { gap = 16 },
            RadioButton {
                text = "Metric", checked = true, tabOrder = 1,
                onChange = function(self) say(self, "Metric units") end,
            },
            RadioButton {
                text = "Imperial", tabOrder = 2,
                onChange = function(self) say(self, "Imperial units") end,
            },
        },
        Static "Shadows",
        CheckBox {
            text = "Draw them", checked = true, tabOrder = 3,
            onChange = function(self) say(self, self.checked and "Shadows on" or "Shadows off") end,
        },
        Static "Brightness",
        HorzScrollBar {
            size = {200, 16}, thumbValue = 10, value = 45, tooltip = "0 to 90",
            onChange = function(self) say(self, "Brightness " .. self.value) end,
        },
        Static "Detail",
        ToggleButton {
            text = "High", tabOrder = 4, size = {112, 32},
            onChange = function(self) self.text = self.checked and "Highest" or "High" end,
        },
    },
    Static { name = "result", text = "Change something, or press Ctrl+S." },
}
