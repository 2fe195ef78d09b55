#pragma once

#include <string>
#include <vector>

#include "testkit/ImageCompare.h"

namespace golden {

/// Pictures of one size, row by row, on pages of at most `maxSide` pixels a side. Each page is compared with
/// tests/golden/NAME-PAGE.png: not a pixel may differ where tests/golden/VERSIONS names what this machine draws with.
/// Elsewhere the run says so and tolerates a little. With VORLEX_UPDATE_GOLDEN in the environment the pages become the
/// references. A failure leaves what was drawn, and beside a reference what differs, under out/golden.
class ContactSheet {
public:
    static constexpr int maxSide = 1000;

    /// `cell` in pixels.
    ContactSheet(std::string name, osg::Vec2i const& cell, int columns);
    /// `what` names the cell in messages.
    void add(std::string const& what, testkit::Image const& picture);
    /// Compares what was added; a GL context is current.
    void finish() const;

private:
    struct Page {
        testkit::Image image;
        std::vector<std::string> cells;
    };

    osg::RectImpl<osg::Vec2i> getRect_(int index) const;
    void compare_(std::string const& name, Page const& page) const;

    std::string name_;
    osg::Vec2i cell_;
    int columns_;
    int rows_;
    std::vector<Page> pages_;
};

}  // namespace golden
