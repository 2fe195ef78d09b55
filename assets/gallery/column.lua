-- A column: VertLayout. What is chosen on the right is set in the column on the left.
local parts = include "parts.lua"

local function across(word, text, checked)
    return RadioButton {
        text = text, checked = checked,
        onChange = function(self)
            self.window:find("column").layout.horzAlign = word
        end,
    }
end

return Window {
    name = "column", text = "Column", size = {440, 376}, resizable = true,
    layout = HorzLayout { gap = 20, horzAlign = "stretch", vertAlign = "stretch" },

    Panel {
        name = "column", insets = 12,
        layout = VertLayout { gap = 8, horzAlign = "stretch" },
        parts.heading "Today",
        Button { text = "Read the mail" },
        Button { text = "Call" },
        Button { text = "Write the report" },
        parts.heading "Tomorrow",
        Button { text = "Sleep late" },
    },
    parts.group {
        insets = {0, 12, 0, 12},
        layout = VertLayout { gap = 8, horzAlign = "stretch" },
        parts.heading "Across the column",
        across("left", "Left"), across("center", "Centre"), across("right", "Right"),
        across("stretch", "Stretch", true),
        parts.heading "Gap",
        HorzScrollBar {
            size = {140, 16}, range = {0, 32}, thumbValue = 8, pageStep = 4, value = 8,
            onChange = function(self)
                self.window:find("column").layout.gap = self.value
                self.window:find("gap").text = self.value .. " units"
            end,
        },
        Static { name = "gap", text = "8 units" },
    },
}
