-- A scroll pane: more than fits, with bars where they are needed. The wheel scrolls.
local parts = include "parts.lua"
local colors = { "0xe06c75ff", "0xd19a66ff", "0xe5c07bff", "0x98c379ff", "0x56b6c2ff", "0x61afefff", "0xc678ddff" }

local pane = ScrollPane {
    name = "pane", position = {16, 16}, size = {400, 222}, vertStep = 8,
    layout = VertLayout { gap = 6 },
    onScroll = function(self)
        self.window:find("place").text = string.format("Scrolled by %d", self.vertValue)
    end,
}
for number = 1, 100 do
    pane[number] = parts.group {
        insets = {8, 2, 8, 2},
        layout = HorzLayout { gap = 16, vertAlign = "center" },
        Static {
            text = string.format("Line %d", number), minSize = {72, 0},
            textLook = { color = colors[number % #colors + 1] },
        },
        Button {
            text = "Done",
            onChange = function(self)
                local place = self.window:find("pane")
                self.parent:destroy()
                -- Whoever hears of that may have ended the pane as well.
                if place.alive then
                    place:updateBounds()
                end
            end,
        },
        CheckBox { text = "Remember" },
    }
end

pane.anchors = parts.anchors("min", "min", "max", "max")
local below = parts.anchors("min", "max", "min", "max")

return Window {
    name = "scrollpane", text = "Scroll pane", size = {444, 348}, minSize = {444, 200}, resizable = true,
    layout = AnchorLayout { },

    pane,
    Button {
        text = "To the end", position = {16, 250}, size = {112, 32}, anchors = below,
        onChange = function(self) self.window:find("pane").vertValue = 1e6 end,
    },
    CheckBox {
        text = "Wide lines", position = {144, 250}, size = {120, 32}, anchors = below,
        onChange = function(self)
            local place = self.window:find("pane")
            place.layout.horzAlign = self.checked and { "left", 200 } or "left"
            if place.alive then
                place:updateBounds()
            end
        end,
    },
    Static { name = "place", text = "Scrolled by 0", position = {276, 250}, size = {140, 32}, anchors = below },
}
