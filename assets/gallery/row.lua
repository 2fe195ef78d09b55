-- A row: HorzLayout. The radio buttons change how the row fills the window; drag its right border, too.
local parts = include "parts.lua"

local function mode(word, text, checked)
    return RadioButton {
        text = text, checked = checked,
        onChange = function(self)
            self.window:find("row").layout.horzAlign = word
        end,
    }
end

local function item(number)
    return Button { text = "Item " .. number, minSize = {64, 32} }
end

return Window {
    name = "row", text = "Row", size = {500, 286}, resizable = true,
    layout = VertLayout { gap = 16, horzAlign = "stretch" },

    parts.heading "HorzLayout: children side by side, a gap of 8 between them",
    Panel {
        name = "row", minSize = {0, 80},
        layout = HorzLayout { gap = 8, horzAlign = "stretch", vertAlign = "center" },
        item(1), item(2), item(3), item(4),
    },
    parts.group {
        layout = HorzLayout { gap = 20, vertAlign = "center" },
        mode("left", "Left"), mode("center", "Centre"), mode("right", "Right"), mode("stretch", "Stretch", true),
    },
    parts.group {
        layout = HorzLayout { gap = 8, vertAlign = "center" },
        Button {
            text = "Add",
            onChange = function(self)
                local row = self.window:find("row")
                row:insert(item(#row.children + 1))
            end,
        },
        Button {
            text = "Take away",
            onChange = function(self)
                local items = self.window:find("row").children
                if #items > 0 then
                    items[#items]:destroy()
                end
            end,
        },
    },
}
