local function ask(question, answered)
    open(ModalWindow {
        name = "question", text = "Question", size = {300, 160}, lockFlow = false,
        layout = VertLayout { gap = 12, horzAlign = "stretch" },
        onCreate = function(self) self:center() end,
        onClose = function(self) self:kill() end,
        Static { text = question, textWrapping = true, minSize = {0, 40} },
        Panel {
            bkgLook = false, insets = 0,
            layout = HorzLayout { gap = 8, horzAlign = "stretch" },
            Button { text = "Yes", onChange = function(self) answered(true) self.window:close() end },
            Button { text = "No", onChange = function(self) answered(false) self.window:close() end },
        },
    })
end

return Window {
    name = "asks", text = "Ask", size = {260, 148},
    layout = VertLayout { gap = 12, horzAlign = "stretch" },

    Button {
        text = "Ask me",
        onChange = function(self)
            local answer = self.window:find("answer")
            ask("Shall it be saved before it is closed?", function(yes)
                answer.text = yes and "It shall." or "It shall not."
            end)
        end,
    },
    Static { name = "answer", text = "No answer yet" },
}
