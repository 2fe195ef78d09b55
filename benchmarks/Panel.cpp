#include <algorithm>
#include <cmath>
#include <cwchar>
#include <string>

#include "benchmarks/BenchHost.h"
#include "benchmarks/Workload.h"
#include "gui_lib/controls/buttons/Button.h"
#include "gui_lib/frame/GUI.h"
#include "gui_lib/graphics/GraphicCommands.h"
#include "gui_lib/windows/Window.h"
#include "host/CommandPlayer.h"
#include "platform/vtx/vtxRenderer.h"
#include "platform/vtx/vtxShader.h"

namespace {

using osg::Vec2i;

constexpr int cellWidth = 100;
constexpr int cellHeight = 24;

int getColumns(int count) {
    return std::max(1, static_cast<int>(std::lround(std::sqrt(double(count) * cellHeight / cellWidth))));
}

Vec2i getGridSize(int count) {
    int const columns = getColumns(count);
    return Vec2i(columns * cellWidth, (count + columns - 1) / columns * cellHeight);
}

/// A window with a grid of push buttons of 96 by 20, all visible, each with a label of 12 characters.
class Panel final : public Workload {
public:
    /// Has room for `count` buttons and makes `first` of them.
    Panel(int count, int first) : count_(count), host_(getGridSize(count) + Vec2i(64, 96)) {
        addOperations_();
        writeLabels_();
        create_(first);
        host_.settle();
    }

    std::vector<Operation> const& getOperations() const override { return operations_; }

    /// Makes the buttons that are missing, and draws them.
    void fill() {
        addButtons_(count_);
        host_.settle();
    }
    /// Shows every digit once, so that no glyph is new any more.
    void showDigits() {
        buttons_.front()->setText(L"Label 123456");
        host_.settle();
        buttons_.front()->setText(L"Label 789012");
        host_.settle();
    }

private:
    void addOperations_() {
        auto const endBefore = [this] { destroy_(), writeLabels_(); };
        auto const renew = [this] {
            destroy_();
            create_(count_);
            host_.settle();
        };
        auto const ready = [this] {
            if (!window_) {
                create_(count_);
                host_.settle();
            }
        };
        auto const readyForNext = [this, ready] { ready(), writeLabel_(getNextTurn_()); };
        auto const readyForAll = [this, ready] { ready(), writeLabels_(); };
        operations_ = {
            {"W1a", "create, per button", [this] { create_(count_); }, endBefore, count_},
            {"W1a2", "create with the first frame, per button", [this] { create_(count_), host_.frame(); }, endBefore,
             count_},
            {"W1i", "destroy, per button", [this] { destroy_(); }, renew, count_},
            {"W1c", "frame in which nothing changed", [this] { host_.frame(); }, ready},
            {"W1d", "frame with one other label", [this] { change_(turn_ = getNextTurn_()), host_.frame(); },
             readyForNext},
            {"W1e", "frame with all labels changed", [this] { changeAll_(), host_.frame(); }, readyForAll},
            {"W1f", "mouse onto the next button, and a frame", [this] { hoverNext_(), host_.frame(); }, ready},
            {"W1h", "record, play and release the tree", [this] { recordAndPlay_(); }, ready},
        };
    }

    void create_(int number) {
        window_ = new gui::Window;
        window_->setText(L"Panel");
        window_->setPosition(Vec2i(16, 16));
        window_->setSize(getGridSize(count_) + Vec2i(32, 64));
        buttons_.reserve(count_);
        addButtons_(number);
        window_->setVisible(true);
    }

    /// Until there are `number` of them.
    void addButtons_(int number) {
        int const columns = getColumns(count_);
        for (int i = static_cast<int>(buttons_.size()); i < number; ++i) {
            auto* const button = new gui::Button;
            button->setText(labels_[static_cast<std::size_t>(i)]);
            button->setPosition(Vec2i(i % columns * cellWidth, i / columns * cellHeight));
            button->setSize(Vec2i(96, 20));
            window_->insertWidget(button, -1);
            buttons_.push_back(button);
        }
    }

    void destroy_() {
        if (!window_)
            return;
        window_->kill();
        window_ = nullptr;
        buttons_.clear();
        gui::GUI::get()->processMessages();
    }

    /// The next label for a button, eleven characters that can be seen and a space. Not a part of what is measured.
    void writeLabel_(int index) {
        constexpr int most = 1000000;
        written_ = (written_ + 37) % most;
        wchar_t label[16];
        std::swprintf(label, 16, L"Label %06d", (index + written_) % most);
        labels_[static_cast<std::size_t>(index)] = label;
    }

    void writeLabels_() {
        labels_.resize(static_cast<std::size_t>(count_));
        for (int i = 0; i < count_; ++i)
            writeLabel_(i);
    }

    int getNextTurn_() const { return (turn_ + 7) % count_; }

    void change_(int index) { buttons_[index]->setText(labels_[static_cast<std::size_t>(index)]); }

    void changeAll_() {
        for (int i = 0; i < count_; ++i)
            change_(i);
    }

    void hoverNext_() {
        Vec2i const corner = buttons_[++hovered_ % count_]->widgetToScreen(Vec2i());
        host_.moveMouse(corner + Vec2i(48, 10));
    }

    void recordAndPlay_() {
        vtxRenderer& renderer = *vtxRenderer::get();
        window_->make(&list_);
        // The hand-over to the thread that plays.
        gui::GUI::get()->doRedraw();
        host::CommandPlayer::doRedraw(list_);
        Vec2i const size = getGridSize(count_) + Vec2i(64, 96);
        {
            osg::RectImpl<Vec2i> const all(Vec2i(), size);
            vtxRenderer::ViewportGuard const viewport(all);
            vtxRenderer::ClipRectGuard const clip(all);
            vtxRenderer::ProjectionMatrixGuard projection;
            projection.makeOrtho2D(0.0f, size.x(), size.y(), 0.0f);
            vtxRenderer::ModelViewMatrixGuard modelView;
            modelView.setIdentity();
            renderer.beginDraw(vtxRenderer::TechniqueNormal);
            renderer.getShader()->resetPositionShift();
            renderer.getShader()->turnOnDrawQuads();
            host::CommandPlayer::draw(list_);
            renderer.endDraw();
        }
        host::CommandPlayer::release(list_);
    }

    int count_;
    BenchHost host_;
    gui::Window* window_ = nullptr;
    std::vector<gui::Button*> buttons_;
    gui::GraphicCommands list_;
    std::vector<Operation> operations_;
    int turn_ = 0;
    std::vector<std::wstring> labels_;
    int written_ = 0;
    int hovered_ = 0;
};

}  // namespace

std::unique_ptr<Workload> makePanel(int size) { return std::make_unique<Panel>(size, size); }

HeapCount measurePanelHeap(int size) {
    Panel panel(size, 1);
    panel.showDigits();
    HeapCount const start = HeapCount::now();
    panel.fill();
    HeapCount const end = HeapCount::now();
    return HeapCount{end.allocations - start.allocations, end.liveBytes - start.liveBytes};
}
