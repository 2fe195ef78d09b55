-- Windows made while the program runs: a modal window that is asked and answers, and others that stay.
local parts = include "parts.lua"

local function ask(question, answered)
    open(ModalWindow {
        name = "question", text = "Question", size = {320, 176}, lockFlow = false,
        layout = VertLayout { gap = 16, horzAlign = "stretch" },
        onCreate = function(self) self:center() end,
        onClose = function(self) self:kill() end,
        hotKeys = { escape = function(self) self:close() end },
        parts.note(question),
        parts.group {
            layout = HorzLayout { gap = 8, horzAlign = "stretch" },
            Button { text = "Yes", tabOrder = 1, onChange = function(self) self.window:close() answered(true) end },
            Button { text = "No", tabOrder = 2, onChange = function(self) self.window:close() answered(false) end },
        },
    })
end

local notes = 0
local function openNote(parent)
    notes = notes + 1
    local x, y = unpack(parent.window.position)
    open(Window {
        name = "note", text = "Note " .. notes, size = {220, 120}, zOrder = 1,
        position = { x + 24 * notes, y + 24 * notes },
        layout = VertLayout { gap = 8, horzAlign = "stretch" },
        onClose = function(self) self:kill() end,
        Static "Closing ends me.",
    })
end

return Window {
    name = "dialog", text = "Dialogs", size = {400, 256}, resizable = true,
    layout = VertLayout { gap = 12, horzAlign = "stretch" },

    parts.note "A function of a window file may open other windows, ask and answer, and end what it has made.",
    parts.group {
        layout = HorzLayout { gap = 8, horzAlign = "stretch" },
        Button {
            text = "Ask", tabOrder = 1,
            onChange = function(self)
                local answer = self.window:find("answer")
                ask("Do you like windows that are written down?", function(yes)
                    -- The question may be answered after this window was closed for good.
                    if answer.alive then
                        answer.text = yes and "You like them." or "You will."
                    end
                end)
            end,
        },
        Button { text = "Open a note", tabOrder = 2, onChange = openNote },
        Button {
            text = "Grow", tabOrder = 3,
            onChange = function(self)
                local place = self.window:find("more")
                place:insert(CheckBox { text = "Added " .. #place.children + 1 })
                -- The first one makes the place higher, which is for what holds the place to see to.
                if place.alive then
                    place.parent:updateLayout()
                end
            end,
        },
    },
    Static { name = "answer", text = "No answer yet." },
    parts.group { name = "more", layout = HorzLayout { gap = 16 } },
}
