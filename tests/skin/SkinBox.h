#pragma once

#include "gui_lib/Skin/Skin.h"
#include "gui_lib/widget/Container.h"

/// A container that any child may be put into, with a plain skin that a test can look into.
class SkinBox : public gui::Container {
public:
    class BoxSkin : public gui::skin::Skin {
    public:
        explicit BoxSkin(gui::Widget* owner) : Skin(owner, true) {}
        using Skin::bkg;
        using Skin::calcBkgSize_;
        using Skin::effect;
        using Skin::focusRect;
        using Skin::image;
        using Skin::target;
        using Skin::text;
        using Skin::textChanged;
    };

    explicit SkinBox(char const* skinName) {
        skin = new BoxSkin(this);
        skin->load(skinName);
    }

    BoxSkin& look() { return static_cast<BoxSkin&>(*skin); }
    SkinBox* add(SkinBox* child) {
        insertWidget_(child, -1);
        return child;
    }
    void place(int x, int y, int w, int h) {
        setPosition(osg::Vec2i(x, y));
        setSize(osg::Vec2i(w, h));
    }
    bool getFocusable() const override { return true; }
    int getInnerState() const override { return inner; }

    int inner = 1;
};
