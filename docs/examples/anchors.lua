return Window {
    name = "anchors", text = "AnchorLayout", size = {340, 200}, resizable = true,
    layout = AnchorLayout { },

    Static {
        text = "Grows with the window", position = {16, 16}, size = {296, 60},
        anchors = { left = "min", top = "min", right = "max", bottom = "max" },
        bkgLook = { center_center = "0x3b5b9aff" }, insets = 12,
    },
    Button {
        text = "Close", position = {216, 96}, size = {96, 32},
        anchors = { left = "max", top = "max", right = "max", bottom = "max" },
        onChange = function(self) self.window:close() end,
    },
}
