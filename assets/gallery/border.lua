-- BorderLayout: five places, by the order of the children: north, south, centre, west, east.
local parts = include "parts.lua"

local function place(text)
    return Button { text = text, minSize = {84, 40} }
end

return Window {
    name = "border", text = "Border", size = {500, 356}, resizable = true,
    layout = VertLayout { gap = 16, horzAlign = "stretch", vertAlign = "stretch" },

    parts.group {
        name = "content", minSize = {0, 160},
        layout = BorderLayout { horzGap = 8, vertGap = 8 },
        place "North", place "South", place "Centre", place "West", place "East",
    },
    parts.group {
        layout = HorzLayout { gap = 12, vertAlign = "center" },
        Static "Gap",
        -- What limits a row is the limits of what is in it.
        HorzScrollBar {
            minSize = {200, 16}, maxSize = {0, 16}, range = {0, 40}, thumbValue = 8, pageStep = 8, value = 8,
            onChange = function(self)
                local layout = self.window:find("content").layout
                layout.horzGap, layout.vertGap = self.value, self.value
            end,
        },
    },
}
