Skin = { buttonSkin = function( return {} end }
