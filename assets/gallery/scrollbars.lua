-- Scroll bars: a value in a range, the part of the range that is in view, a step and a page.
local parts = include "parts.lua"

local function show(self)
    self.window:find("value").text = string.format("Value %g, at most %g", self.value, self.range[2] - self.thumbValue)
end

local function choice(text, apply)
    return Button { text = text, onChange = function(self) apply(self.window:find("bar")) end }
end

return Window {
    name = "scrollbars", text = "Scroll bars", size = {440, 276}, resizable = true,
    layout = HorzLayout { gap = 16, horzAlign = "stretch", vertAlign = "stretch" },

    parts.group {
        layout = VertLayout { gap = 12, horzAlign = "stretch" },
        parts.heading "Drag, click beside the thumb, or step",
        HorzScrollBar {
            name = "bar", size = {200, 16}, onChange = show,
            onThumbPressed = function(self) self.window:find("state").text = "The thumb is held." end,
            onThumbReleased = function(self) self.window:find("state").text = "The thumb is free." end,
        },
        parts.group {
            layout = HorzLayout { horzAlign = "stretch" },
            Static { name = "value", text = "Value 0, at most 70" },
            Static { name = "state", text = "The thumb is free." },
        },
        parts.group {
            layout = HorzLayout { gap = 8, horzAlign = "stretch" },
            choice("Steps of 1", function(bar) bar.step = 1 end),
            choice("Steps of 25", function(bar) bar.step = 25 end),
        },
        parts.group {
            layout = HorzLayout { gap = 8, horzAlign = "stretch" },
            choice("Small thumb", function(bar) bar.thumbValue = 5 end),
            choice("Large thumb", function(bar) bar.thumbValue = 60 end),
        },
    },
    VertScrollBar {
        minSize = {16, 0}, maxSize = {16, 0}, pageStep = 20, tooltip = "Moves the other bar",
        onChange = function(self)
            local bar = self.window:find("bar")
            bar.value = self.value
            if bar.alive then
                show(bar)
            end
        end,
    },
}
