-- Makes a window from a window file: GUI::createWindowFromResource runs this with the name of the file, and
-- GUI::loadWindowFromResource with the name and the handler of the window to fill.
-- The functions of the module raise no error: what is wrong in the file is logged with file and line, what can be built
-- is built, and a file that fails as a whole gives nothing and leaves a window that is to be filled as it was.
local file, window = ...
local vorlexgui = require "vorlexgui"

local description = vorlexgui.read(file)
if not description then
    return nil
end
if window then
    vorlexgui.fill(window, description)
    return nil
end
return vorlexgui.make(description)
