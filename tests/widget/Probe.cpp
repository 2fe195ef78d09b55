#include "tests/widget/Probe.h"

#include <cstdlib>
#include <cstring>

#include "gui_lib/widget/WidgetHandler.h"

namespace widget_test {

namespace {

struct Block {
    std::size_t size;
    Block* next;
    alignas(std::max_align_t) unsigned char bytes[1];
};

Block* freedBlocks = nullptr;
std::vector<std::string> events;

}  // namespace

void* allocateTracked(std::size_t size) {
    auto* const block = static_cast<Block*>(std::malloc(sizeof(Block) + size));
    block->size = size;
    return block->bytes;
}

void freeTracked(void* memory) {
    if (!memory)
        return;
    auto* const block = reinterpret_cast<Block*>(static_cast<unsigned char*>(memory) - offsetof(Block, bytes));
    std::memset(block->bytes, 0xdd, block->size);
    block->next = freedBlocks;
    freedBlocks = block;
}

void noteEvent(std::string const& event) { events.push_back(event); }

std::vector<std::string> takeEvents() { return std::exchange(events, {}); }

WidgetProbe* Box::add(std::string label, int x, int y, int width, int height) {
    auto* const child = new WidgetProbe(std::move(label));
    child->setPosition(at(x, y));
    child->setSize(at(width, height));
    child->setFocusableFlag(true);
    insert(child);
    return child;
}

WideLayout::~WideLayout() {
    if (deaths)
        ++*deaths;
}

void WideLayout::updateSize() {
    ++runs;
    auto* const owner = dynamic_cast<gui::Container*>(gui::WidgetHandler::get(getContainer()));
    for (int i = 0; owner && i < owner->getWidgetCount(); ++i)
        if (gui::Widget* const child = owner->getWidget(i))
            child->setSize(osg::Vec2i(owner->getSize().x(), 10));
}

}  // namespace widget_test
