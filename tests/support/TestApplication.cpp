#include "tests/support/TestApplication.h"

namespace support {

TestApplication::TestApplication(osg::Vec2i const& size) { createMainWindow(size.x(), size.y(), false); }

void TestApplication::setWindowSize(osg::Vec2i const& size) {
    width = size.x();
    height = size.y();
}

void TestApplication::processModal() {
    if (modalFrame)
        modalFrame();
}

void TestApplication::createWindow_(int, int, bool) {}

}  // namespace support
