Skin = function() end
