return Window {
    name = "first", text = "My first window", size = {300, 160},

    Static { name = "answer", text = "Nobody has pressed it yet.", position = {16, 16} },
    Button {
        text = "Press me", position = {16, 52},
        onChange = function(self)
            self.window:find("answer").text = "Thank you!"
        end,
    },
}
