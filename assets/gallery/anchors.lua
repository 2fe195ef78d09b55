-- AnchorLayout: each edge of a child stays, is centred, follows the far edge or scales. Resize the window.
-- Places count from the corner of the window's view, which has margins of 16.
local anchors = include("parts.lua").anchors

local function box(text, position, size, how)
    return Button { text = text, position = position, size = size, anchors = how }
end

return Window {
    name = "anchors", text = "Anchors", size = {444, 302}, resizable = true, minSize = {380, 260},
    layout = AnchorLayout { },

    box("stays here", {16, 16}, {140, 32}, anchors("min", "min", "min", "min")),
    box("follows the right edge", {228, 16}, {188, 32}, anchors("max", "min", "max", "min")),
    box("grows in width", {16, 60}, {400, 32}, anchors("min", "min", "max", "min")),
    box("its right edge scales", {16, 104}, {194, 88}, anchors("min", "min", "stretch", "max")),
    box("its left edge scales", {222, 104}, {194, 88}, anchors("stretch", "min", "max", "max")),
    box("stays in the middle", {127, 204}, {178, 32}, anchors("center", "max", "center", "max")),
    Button {
        text = "Larger", position = {332, 204}, size = {84, 32}, anchors = anchors("max", "max", "max", "max"),
        onChange = function(self)
            local large = self.window.size[1] > 500
            self.window.size = large and {444, 302} or {600, 420}
            self.text = large and "Larger" or "Smaller"
        end,
    },
}
