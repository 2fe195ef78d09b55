-- What the pages of the gallery share.
local parts = {}

-- Holds widgets and shows nothing of its own.
function parts.group(panel)
    panel.bkgLook = false
    panel.insets = panel.insets or 0
    return Panel(panel)
end

function parts.heading(text)
    return Static { text = text, textLook = { font = "fonts/Inter-SemiBold.otf" } }
end

-- Text over several lines, in a stronger or weaker voice than a label.
function parts.note(text, height)
    return Static { text = text, textWrapping = true, minSize = {0, height or 44} }
end

-- Anchors by the edges that each edge of a widget goes with.
function parts.anchors(left, top, right, bottom)
    return { left = left, top = top, right = right, bottom = bottom }
end

return parts
