local pane = ScrollPane { name = "list", position = {16, 16}, size = {248, 150}, layout = VertLayout { gap = 4 } }
for number = 1, 30 do
    pane[number] = CheckBox {
        text = "Task " .. number,
        onChange = function(self)
            local list = self.window:find("list")
            self:destroy()
            list:updateBounds()
        end,
    }
end

return Window { name = "tasks", text = "What is to be done", size = {292, 220}, pane }
