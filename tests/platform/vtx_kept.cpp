// Quads that stay in the stream from frame to frame are those that would be made anew.

#include <algorithm>
#include <functional>
#include <random>

#include "platform/vtx/vtxFontManager.h"
#include "platform/vtx/vtxShaderBkgQuads.h"
#include "platform/vtx/vtxTextString.h"
#include "platform/vtx/vtxTextureManager.h"
#include "tests/platform/vtx_Fixture.h"

namespace {

using osg::Vec4f;
using support::Rect;

/// What is drawn: a background or a text at a place, through a clip, in a way that stays until something changes it.
struct Thing {
    vtxShaderBkgQuads bkg;
    Vec4f colors[vtxShaderBkgQuads::maxCount];
    vtxTextString text;
    float x = 0.0f, y = 0.0f, zoom = 1.0f, opacity = 1.0f;
    Rect clip{0, 0, 200, 100};
    int sampler = 0;
    bool lined = false;
};

class Kept : public support::RendererTest {
protected:
    int choose(int count) { return static_cast<int>(random_() % static_cast<unsigned>(count)); }

    void fillBkg(Thing& thing) {
        thing.bkg.count = 0;
        thing.bkg.setTexture(choose(3) ? pictures_[choose(4)] : nullptr);
        for (int i = choose(4); i >= 0; --i) {
            thing.colors[thing.bkg.count] = Vec4f(choose(3) * 0.5f, 1.0f, 0.5f, choose(4) * 0.25f);
            float const far = choose(8) ? 1.0f : 1.5f;  // beyond the picture
            thing.bkg.addQuad({choose(9) * 3.0f, choose(9) * 2.5f, choose(9) * 3.5f, 8.0f, 0.0f, 0.0f, far, 1.0f});
        }
    }

    void fillText(Thing& thing) {
        thing.text.font = font_;
        thing.text.position.set(0, choose(4) ? 20 : 0);
        // Of the long ones, not every quad is told apart.
        int const length = choose(8) ? choose(6) : 60 + choose(10);
        thing.text.text.assign(static_cast<std::size_t>(length), wchar_t(L'a' + choose(26)));
        thing.text.color = Vec4f(1.0f, choose(2), 1.0f, 1.0f);
        thing.text.shadowColor = Vec4f(0.0f, 0.0f, 0.0f, choose(2));
        thing.text.redraw(-1.0f);
    }

    void changeLetter(Thing& thing) {
        if (thing.text.text.empty())
            return;
        thing.text.text[static_cast<std::size_t>(choose(static_cast<int>(thing.text.text.size())))] =
            wchar_t(L'a' + choose(26));
        thing.text.position.x() = choose(3);
        thing.text.redraw(-1.0f);
    }

    void change(Thing& thing) {
        switch (choose(12)) {
            case 0:
                return fillBkg(thing);
            case 1:
                return fillText(thing);
            case 2:
                thing.x = choose(80) * 2.5f - 20.0f;
                break;
            case 3:
                thing.y = choose(40) * 2.5f - 10.0f;
                break;
            case 4:
                thing.zoom = choose(4) ? 1.0f : 1.5f;
                break;
            case 5:
                thing.opacity = choose(3) * 0.5f;
                break;
            case 6:
                thing.lined = !thing.lined;
                break;
            case 7:
                thing.clip = choose(3) ? Rect(0, 0, 200, 100) : Rect(choose(90), choose(50), 150, 90);
                break;
            case 8:
                thing.sampler = choose(2);
                break;
            default:
                changeLetter(thing);
                break;
        }
    }

    void changeScene() {
        for (int i = choose(4); i > 0 && !things_.empty(); --i)
            change(*things_[static_cast<std::size_t>(choose(static_cast<int>(things_.size())))]);
        int const at = choose(static_cast<int>(things_.size()) + 1);
        if (choose(4) == 0) {
            auto thing = std::make_unique<Thing>();
            fillBkg(*thing);
            fillText(*thing);
            things_.insert(things_.begin() + at, std::move(thing));
        } else if (choose(5) == 0 && at < static_cast<int>(things_.size())) {
            things_.erase(things_.begin() + at);
        } else if (choose(6) == 0) {
            std::rotate(things_.begin(), things_.begin() + at, things_.end());
        }
        if (choose(12) == 0)
            std::swap(viewport_, otherViewport_);
        if (choose(20) == 0)
            std::exchange(pictures_[choose(4)], nullptr);
        if (choose(15) == 0)
            renderer_->setScale(choose(2) ? 1.0f : 1.25f);
    }

    /// The device's operations for all things; with `anew` as copies that the renderer has never seen.
    std::string draw(bool anew) {
        log_->clearLines();
        drawThings(anew);
        std::string drawn;
        for (qor::string const& line : log_->getLines()) {
            // Pictures and glyphs are sent once.
            uploaded_ |= line.starts_with("uploadTexture");
            if (!line.starts_with("createTexture") && !line.starts_with("uploadTexture"))
                drawn += std::string_view(line), drawn += '\n';
        }
        return drawn;
    }

    void drawThings(bool anew) {
        Frame const frame(*renderer_, viewport_);
        for (auto const& thing : things_) {
            vtxRenderer::ClipRectGuard const clip(thing->clip);
            vtxRenderer::ModelViewMatrixGuard place;
            place.setTranslate(thing->x, thing->y, 0.0f);
            osg::Matrixf zoomed = renderer_->getModelViewMatrix();
            zoomed(0, 0) *= thing->zoom;
            zoomed(1, 1) *= thing->zoom;
            renderer_->setModelViewMatrix(zoomed);
            vtxRenderer::OpacityGuard const opacity(thing->opacity);
            shader().setColors(thing->colors[0].ptr(), thing->bkg.count);
            shader().setUserTextureFiltering(static_cast<vtxRenderer::TextureSampler>(thing->sampler));
            if (anew)
                copyOf(thing->bkg).draw(&shader());
            else
                thing->bkg.draw(&shader());
            shader().resetTextureSampler();
            if (anew)
                copyOf(thing->text).draw(&shader(), -1.0f);
            else
                thing->text.draw(&shader(), -1.0f);
            if (thing->lined)
                core().prepareLines(Vec4f(1, 1, 0, 1)).addLine({1.0, 1.0, thing->x, 20.0, 1.0, true, true});
        }
    }

    static vtxShaderBkgQuads copyOf(vtxShaderBkgQuads const& bkg) {
        vtxShaderBkgQuads copy;
        copy.setTexture(bkg.getTexture());
        for (int i = 0; i < bkg.count; ++i)
            copy.addQuad(bkg.getQuads()[i]);
        return copy;
    }

    static vtxTextString copyOf(vtxTextString const& text) {
        vtxTextString copy;
        copy.font = text.font;
        copy.text = text.text;
        copy.color = text.color;
        copy.shadowColor = text.shadowColor;
        copy.position = text.position;
        copy.redraw(-1.0f);
        return copy;
    }

    unsigned countMade() {
        renderer_->getTextureManager()->flushReleased();
        renderer_->resetCounters();
        draw(false);
        return renderer_->getCounters().madeQuads;
    }

    std::mt19937 random_{5};
    bool uploaded_ = false;
    vtxTexture* pictures_[4] = {getPicture(), getPicture(), getPicture(), getPicture(true)};
    std::shared_ptr<vtxFont> font_ =
        renderer_->getFontManager()->getFont("assets/fonts/Inter-Regular.otf", 14, vtxFont::BlurNone);
    std::vector<std::unique_ptr<Thing>> things_;
    Rect viewport_{0, 0, 200, 100}, otherViewport_{10, 5, 150, 95};
};

TEST_F(Kept, AreTheOnesThatWouldBeMadeAnewWhateverChanges) {
    for (int round = 0; round < 600; ++round) {
        changeScene();
        if (choose(10))
            renderer_->getTextureManager()->flushReleased();
        std::string shown = draw(false);
        // An upload into a page in use ends a run.
        if (std::exchange(uploaded_, false))
            shown = draw(false);
        if (choose(3) == 0)
            ASSERT_EQ(shown, draw(true)) << "round " << round;
        else
            ASSERT_EQ(shown, draw(false)) << "round " << round;
    }
}

TEST_F(Kept, AreAllOfAnUnchangedFrameAndAllButTheChangedOnesOfAnother) {
    for (int i = 0; i < 100; ++i) {
        things_.push_back(std::make_unique<Thing>());
        Thing& thing = *things_.back();
        thing.bkg.addQuad({0.0f, 0.0f, 5.0f, 5.0f, 0.0f, 0.0f, 1.0f, 1.0f});
        thing.colors[0] = Vec4f(1, 1, 1, 1);
        thing.x = static_cast<float>(i);
    }
    EXPECT_EQ(countMade(), 100u);
    EXPECT_EQ(countMade(), 0u);
    things_[30]->x += 1.5f;
    EXPECT_EQ(countMade(), 0u) << "it was moved";
    things_[30]->clip = Rect(34, 0, 200, 100);
    EXPECT_EQ(countMade(), 1u) << "it was cut";
    things_[30]->x += 1.0f;
    EXPECT_EQ(countMade(), 1u) << "what was cut is not moved";
    things_.erase(things_.begin() + 20);
    EXPECT_EQ(countMade(), 0u);
    auto& first = *things_.insert(things_.begin() + 10, std::make_unique<Thing>());
    first->bkg.addQuad({0.0f, 0.0f, 5.0f, 5.0f, 0.0f, 0.0f, 1.0f, 1.0f});
    first->colors[0] = Vec4f(1, 1, 1, 1);
    EXPECT_EQ(countMade(), 1u);
    std::rotate(things_.begin(), things_.begin() + 5, things_.end());
    EXPECT_EQ(countMade(), 5u) << "those that were brought to the front";
    things_[7]->colors[0].a() = 0.5f;
    EXPECT_EQ(countMade(), 0u) << "it was given its colour";
    things_[7]->colors[0].a() = 0.0f;
    EXPECT_EQ(countMade(), 0u);
    things_[7]->colors[0].a() = 1.0f;
    EXPECT_EQ(countMade(), 1u) << "what was transparent comes back";
}

TEST_F(Kept, AreNotThoseOfOtherQuadsThatTakeTheColoursOver) {
    things_.push_back(std::make_unique<Thing>());
    Thing& thing = *things_.back();
    for (int i = 0; i < 3; ++i)
        thing.bkg.addQuad({10.0f * float(i), 0.0f, 5.0f, 5.0f, 0.0f, 0.0f, 1.0f, 1.0f});
    Vec4f const red(1, 0, 0, 1), transparent(0, 0, 1, 0);
    auto const getPlaces = [&](Vec4f const& first, Vec4f const& second, Vec4f const& third) {
        thing.colors[0] = first, thing.colors[1] = second, thing.colors[2] = third;
        renderer_->getTextureManager()->flushReleased();
        draw(false);
        std::vector<double> places;
        for (support::TracedQuad const& quad : getQuads())
            places.push_back(quad.x);
        return places;
    };
    EXPECT_EQ(getPlaces(red, transparent, red), (std::vector{0.0, 20.0}));
    EXPECT_EQ(getPlaces(transparent, red, red), (std::vector{10.0, 20.0}));
    EXPECT_EQ(getPlaces(red, red, transparent), (std::vector{0.0, 10.0}));
}

TEST_F(Kept, AreThoseLettersOfATextThatComeOutTheSame) {
    things_.push_back(std::make_unique<Thing>());
    vtxTextString& text = things_[0]->text;
    auto const font =
        renderer_->getFontManager()->getFont("assets/fonts/JetBrainsMono-Regular.ttf", 14, vtxFont::BlurNone);
    auto const show = [&](wchar_t const* shown, int x) {
        bool const changed = text.setLine(font, shown, osg::Vec2i(x, 20));
        text.update(-1.0f);
        return changed;
    };
    text.color = Vec4f(1, 1, 1, 1);
    show(L"count 0139 548", 5);
    countMade();
    EXPECT_TRUE(show(L"count 0135 548", 5));
    EXPECT_EQ(countMade(), 1u);
    EXPECT_FALSE(show(L"count 0135 548", 5));
    EXPECT_EQ(countMade(), 0u);
    EXPECT_TRUE(show(L"count 135 548", 5));
    EXPECT_EQ(countMade(), 11u) << "another number of letters";
    EXPECT_TRUE(show(L"count 135 548", 6));
    EXPECT_EQ(countMade(), 0u) << "they were moved";
    EXPECT_TRUE(show(L"count 131 548", 7));
    EXPECT_EQ(countMade(), 1u);
    text.redraw(-1.0f);
    EXPECT_EQ(countMade(), 0u) << "nothing came out otherwise";
    // What was drawn is no longer the content before.
    show(L"count 136 548", 6);
    show(L"count 136 547", 6);
    EXPECT_EQ(countMade(), 11u);
}

TEST_F(Kept, QuadsThatMovedAreThoseThatWouldBeMadeThere) {
    auto const pick = [this](std::initializer_list<double> values) {
        return values.begin()[choose(int(values.size()))];
    };
    auto const pickPair = [&](std::initializer_list<double> values) { return vtxPair{pick(values), pick(values)}; };
    int moved = 0, stayed = 0;
    for (int round = 0; round < 20000; ++round) {
        vtxUprightSpace space{};
        space.scale = vtxPairs::both(pick({1.0, 1.25, 1.5}));
        space.shift = pickPair({0.0, 0.0, 0.5});
        space.stretch = vtxPairs::both(1.0);
        space.viewScale = pickPair({1.0, 1.0000001, 0.99999994});
        space.viewOffset = pickPair({0.0, 10.0});
        space.visibleTo = vtxPair{200.0, 100.0};
        space.texels = vtxPairs::both(1024.0);
        space.coordinateScale = vtxPairs::both(1.0 / 4.0);
        space.snapped = choose(8) != 0;
        space.glyphs = space.exact = choose(2) != 0;
        vtxPair const position = pickPair({0.0, 0.4, 1.5, 3.0, 7.25});
        vtxPair const texels = pickPair({8.0, 9.0, 13.5});
        vtxPair const size = choose(4) ? texels / space.scale : pickPair({8.0, 8.3, 12.0, -4.0});
        vtxPair const first = pickPair({0.0, 0.125}), last = first + texels / 256.0;
        auto const place = [&] { return pickPair({0.0, 20.0, 20.5, 31.25, 150.0, 195.0, -3.0}); };
        vtxUprightQuad there, here, again;
        space.place = place();
        if (there.make(space, position, size, first, last) != vtxUprightQuad::Seen || !there.movable)
            continue;
        space.place = place();
        bool const seen = here.make(space, position, size, first, last) == vtxUprightQuad::Seen;
        if (!again.move(space, position, size, there.to - there.from)) {
            ++stayed;
            continue;
        }
        ++moved;
        ASSERT_TRUE(seen && here.movable) << round;
        ASSERT_TRUE(vtxPairs::all(again.from == here.from) && vtxPairs::all(again.to == here.to)) << round;
        ASSERT_TRUE(vtxPairs::all(there.coordinateFrom == here.coordinateFrom) &&
                    vtxPairs::all(there.coordinateTo == here.coordinateTo))
            << round;
    }
    EXPECT_GT(moved, 2000);
    EXPECT_GT(stayed, 1000);
}

TEST_F(Kept, RepeatedQuadsAreOfTheirSizeTheirPictureAndTheirView) {
    vtxQuadRepeats repeats;
    vtxQuadRepeats::Space const space{nullptr, 1, 7};
    vtxQuad quad{1.0f, 2.0f, 8.0f, 9.0f, 0.0f, 0.0f, 0.5f, 0.5f};
    vtxQuadInstance instance{};
    instance.layer = 3;
    repeats.remember(space, quad, instance, vtxPair{8.0, 9.0});
    quad.x = 50.0f;
    auto const* const found = repeats.find(space, quad);
    ASSERT_TRUE(found);
    EXPECT_EQ(found->instance.layer, 3u);
    EXPECT_FALSE(repeats.find({nullptr, 2, 7}, quad));
    EXPECT_FALSE(repeats.find({nullptr, 1, 8}, quad));
    for (float vtxQuad::*const part :
         {&vtxQuad::w, &vtxQuad::h, &vtxQuad::uMin, &vtxQuad::vMin, &vtxQuad::uMax, &vtxQuad::vMax}) {
        vtxQuad other = quad;
        other.*part += 0.25f;
        EXPECT_FALSE(repeats.find(space, other));
    }
    // However many come between, what is found is what was asked for.
    for (int i = 0; i < 5000; ++i) {
        quad.uMin = static_cast<float>(1 + i % 700);
        instance.layer = static_cast<std::uint32_t>(i % 700);
        auto const* const known = repeats.find(space, quad);
        ASSERT_TRUE(!known || known->instance.layer == instance.layer) << i;
        repeats.remember(space, quad, instance, vtxPair{8.0, 9.0});
        ASSERT_TRUE(repeats.find(space, quad));
    }
}

TEST_F(Kept, AreNotThoseOfABatchThatWasChangedOtherwiseThanByWritingItAnew) {
    vtxQuad const first[] = {{0, 0, 8, 8, 0.0f, 0.0f, 0.5f, 0.5f}, {10, 0, 8, 8, 0.0f, 0.0f, 0.5f, 0.5f}};
    vtxQuad const second[] = {{1, 0, 8, 8, 0.0f, 0.0f, 0.5f, 0.5f}, {10, 0, 8, 8, 0.0f, 0.0f, 0.5f, 0.5f}};
    auto const show = [this](vtxShaderQuads const& quads) {
        Frame const frame(*renderer_, viewport_);
        quads.draw(&shader());
    };
    auto const write = [&](vtxShaderQuads& quads, vtxQuad const* written) {
        vtxQuadsRewriter(quads).addBatch(pictures_[0], written, 2);
    };
    auto const expectAsNew = [&](std::function<void(vtxShaderQuads&)> const& change) {
        vtxShaderQuads kept, fresh;
        write(fresh, second);
        change(fresh);
        show(fresh);
        write(kept, first);
        show(kept);
        write(kept, second);
        change(kept);
        log_->clearLines();
        show(kept);
        std::vector<qor::string> const shown(log_->getLines().begin(), log_->getLines().end());
        log_->clearLines();
        show(fresh);
        EXPECT_TRUE(std::equal(shown.begin(), shown.end(), log_->getLines().begin(), log_->getLines().end()));
    };
    expectAsNew([&](vtxShaderQuads& quads) { quads.setTexture(pictures_[1]); });
    expectAsNew([&](vtxShaderQuads& quads) {
        quads.addBatchTexCoords(0.0f, 0.0f, 1.0f, 1.0f);
        quads.endBatch();
    });
}

TEST_F(Kept, TextStringsDrawWhatIsLeftOfTheirQuads) {
    vtxTextString text;
    text.font = font_;
    text.text = L"abc";
    text.position.set(5, 20);
    text.color = text.bkgColor = Vec4f(1, 1, 1, 1);
    text.redraw(-1.0f);
    text.quads.reset();
    text.quads.beginBatch(nullptr, 1);
    text.quads.addBatchQuad(0, 0, 5, 5, -1.0f);
    text.quads.endBatch();
    log_->clearLines();
    {
        Frame const frame(*renderer_, viewport_);
        text.draw(&shader(), -1.0f);
    }
    EXPECT_EQ(getQuads().size(), 1u);
}

}  // namespace
