#include <cmath>
#include <functional>
#include <optional>
#include <vector>

#include "gui_lib/graphics/GraphicCommandGuards.h"
#include "gui_lib/graphics/GraphicCommands.h"
#include "gui_lib/graphics/ScratchGraphicCommands.h"
#include "gui_lib/graphics/commands/GraphicCommandDrawGeometry.h"
#include "gui_lib/graphics/commands/GraphicCommandDrawShapes.h"
#include "gui_lib/graphics/commands/GraphicCommandStates.h"
#include "gui_lib/graphics/commands/GraphicCommandTechniques.h"
#include "host/CommandPlayer.h"
#include "platform/vtx/vtxFontManager.h"
#include "platform/vtx/vtxFrameBuffer.h"
#include "platform/vtx/vtxRenderer.h"
#include "platform/vtx/vtxShader.h"
#include "platform/vtx/vtxShaderBkgQuads.h"
#include "platform/vtx/vtxShaderQuads.h"
#include "platform/vtx/vtxTextString.h"
#include "tests/graphics/TraceFixture.h"
#include "tests/support/HeapScope.h"

namespace {

using namespace gui;

class CommandPlayback : public TraceFixture {};

vtxShaderQuads makeQuads() {
    vtxShaderQuads quads;
    for (int batch = 0; batch < 2; ++batch) {
        quads.beginBatch(nullptr, 0);
        quads.addBatchQuad(10.0f * static_cast<float>(batch), 0, 5, 4, -1);
        quads.addBatchTexCoords(0, 0, 0, 0);
        quads.endBatch();
    }
    return quads;
}

std::shared_ptr<vtxFont> makeFont(int size) {
    return vtxRenderer::get()->getFontManager()->getFont("assets/fonts/DejaVuSans.ttf", size, vtxFont::BlurNone);
}

vtxTextString makeString(wchar_t const* text, int x = 0, int y = 0) {
    vtxTextString string;
    string.font = makeFont(16);
    string.text = text;
    string.color.set(1, 1, 1, 1);
    string.position.set(x, y);
    string.redraw(-1.0f);
    return string;
}

TEST_F(CommandPlayback, stateStepsReachTheRendererInOrder) {
    vtxRenderer::get()->setScale(2.0f);
    auto const rect = osg::RectImpl<osg::Vec2i>(1, 2, 30, 40);
    EXPECT_EQ(operationsRecorded([&](GraphicCommands& list) {
                  list.setOpacity(0.75f);
                  GraphicCommandClipRectGuard const clip(&list, rect);
                  GraphicCommandViewportGuard const viewport(&list, rect);
                  GraphicCommandOpacityGuard const opacity(&list, 0.5f);
                  GraphicCommandShaderTechniqueGuard const technique(&list, vtxRenderer::TechniqueTargetVR);
                  GraphicCommandShiftPositionGuard const shift(&list, 1, 2, 0);
                  GraphicCommandShiftPositionGuard const ownScale(&list, 1, 2, 3);
                  list.add(GraphicCommandSetTextureFiltering::fetch()->set(vtxRenderer::SamplerNearest));
              }),
              "setOpacity 0.75; pushClipRect 1 2 30 40; pushViewport 1 2 30 40; setOpacity 0.5;"
              " pushTechnique 5; shiftPosition 1 2 2; shiftPosition 1 2 3; "
              "setTextureFiltering 1; shiftPosition -1 -2 3; shiftPosition -1 -2 2; popTechnique; "
              "setOpacity 0.75; popViewport; popClipRect");
    EXPECT_EQ(operationsRecorded([](GraphicCommands& list) {
                  list.setOpacity(1.0f);
                  list.add(GraphicCommandSetShaderTechnique::fetch()->set(vtxRenderer::TechniqueNone));
                  list.add(GraphicCommandSetShaderTechnique::fetch()->set(vtxRenderer::TechniqueTarget));
              }),
              "setOpacity 1; endDraw; beginDraw 4");
}

TEST_F(CommandPlayback, quadsTakeTheirColourAndBatch) {
    vtxShaderQuads const quads = makeQuads();
    osg::Vec4f const color(1, 0.5f, 0, 1);
    std::string const first = "at 0 0 size 5 4 color 1 0.5 0 1\n";
    std::string const second = "at 10 0 size 5 4 color 1 0.5 0 1\n";
    EXPECT_EQ(quadsRecorded([&](GraphicCommands& list) { list.drawQuads(quads, color, 0, -1); }), first + second);
    EXPECT_EQ(quadsRecorded([&](GraphicCommands& list) { list.drawQuads(quads, color, 0, 1); }), second);
}

TEST_F(CommandPlayback, backgroundsKeepTheColoursOfTheMomentOfRecording) {
    vtxShaderBkgQuads quads;
    float colors[9 * 4] = {1, 0, 0, 1, 0, 1, 0, 0.5f};
    GraphicCommands list;
    list.drawBkg(quads, colors);
    quads.addQuad({0, 0, 5, 5, 0, 0, 0, 0});
    quads.addQuad({5, 0, 5, 5, 0, 0, 0, 0});
    list.drawBkg(quads, colors);
    colors[0] = 0;
    quads.count = 0;
    EXPECT_EQ(operations([&] { host::CommandPlayer::play(list); }), "turnOnDrawQuads");
    EXPECT_EQ(quads.count, 0);
    EXPECT_EQ(this->quads([&] { host::CommandPlayer::play(list); }),
              "at 0 0 size 5 5 color 1 0 0 1\nat 5 0 size 5 5 color 0 1 0 0.5\n");
    host::CommandPlayer::release(list);
}

TEST_F(CommandPlayback, shapesAndGeometryTurnQuadsOff) {
    qor::vector<vtxVertex> vertices(3);
    vertices[1].x = 10;
    vertices[2].y = 10;
    for (vtxVertex& vertex : vertices)
        vertex.a = 1;
    auto const record = [&](GraphicCommands& list) {
        list.add(GraphicCommandDrawCircle::fetch()->set(osg::Vec4f(1, 1, 1, 1), 5, 8));
        list.add(GraphicCommandDrawLifeBar::fetch()->set(osg::Vec4f(1, 1, 1, 1), osg::Vec2f(20, 3), 0.5f));
        list.add(
            GraphicCommandDrawGeometry::fetch()->set(vertices, {0, 1, 2}, vtxGeometry::PrimitiveTriangles, 1, nullptr));
    };
    char const* const expected =
        "turnOffDrawQuads; drawCircle 5 8; turnOffDrawQuads; drawLifeBar 20 3 0.5; turnOffDrawQuads; "
        "drawPrimitives 3 1 0";
    EXPECT_EQ(operationsRecorded(record), expected);
    EXPECT_EQ(operationsRecorded(record), expected);
}

TEST_F(CommandPlayback, whatBelongsToARendererThatIsGoneIsNotDrawn) {
    auto const record = [&](GraphicCommands& list) {
        list.add(GraphicCommandDrawGeometry::fetch()->set(qor::vector<vtxVertex>(3), {0, 1, 2},
                                                          vtxGeometry::PrimitiveTriangles, 1, nullptr));
    };
    operationsRecorded(record);
    GraphicCommands old;
    record(old);
    auto target = makeTarget(8, 8);
    vtxShaderQuads quads;
    quads.beginBatch(target->getTexture(), 1);
    quads.addBatchQuad(0, 0, 5, 5, -1);
    old.drawQuads(quads, osg::Vec4f(1, 1, 1, 1), 0, -1);
    vtxShaderBkgQuads bkg;
    bkg.setTexture(target->getTexture());
    bkg.addQuad({0, 0, 5, 5, 0, 0, 1, 1});
    float const colors[9 * 4] = {1, 1, 1, 1};
    old.drawBkg(bkg, colors);
    target.reset();
    host::CommandPlayer::doRedraw(old);
    replaceRenderer();
    EXPECT_EQ(operations([&] { host::CommandPlayer::draw(old); }), "");
    EXPECT_EQ(operations([&] { host::CommandPlayer::play(old); }), "");
    host::CommandPlayer::release(old);
    EXPECT_EQ(operationsRecorded(record), "turnOffDrawQuads; drawPrimitives 3 1 0");
}

TEST_F(CommandPlayback, functionsRunAtTheirVerbs) {
    vtxRenderer* const renderer = vtxRenderer::get();
    EXPECT_EQ(operationsRecorded([&](GraphicCommands& list) {
                  list.drawFunc([renderer] { renderer->setOpacity(0.3f); }, osg::Vec2i(7, 8),
                                [renderer](osg::Vec2i const& size) {
                                    renderer->pushClipRect(osg::RectImpl<osg::Vec2i>(0, 0, size.x(), size.y()));
                                    renderer->popClipRect();
                                });
                  list.drawFunc({}, osg::Vec2i(), {});
                  list.parse([renderer] { renderer->setOpacity(0.1f); });
                  list.parse({});
              }),
              "setOpacity 0.1; pushClipRect 0 0 7 8; popClipRect; setOpacity 0.3");
}

TEST_F(CommandPlayback, targetsAreFilledBeforeAnythingIsDrawn) {
    auto const target = makeTarget(40, 30);
    vtxRenderer* const renderer = vtxRenderer::get();
    EXPECT_EQ(operationsRecorded([&](GraphicCommands& list) {
                  list.setOpacity(0.9f);
                  ScratchGraphicCommands inner;
                  inner->drawFunc([renderer] { renderer->setOpacity(0.2f); }, osg::Vec2i(),
                                  [renderer](osg::Vec2i const&) { renderer->setOpacity(0.1f); });
                  list.drawToTarget(target, osg::Vec2i(20, 10), inner->getCommands());
                  list.setOpacity(1.0f);
              }),
              "setOpacity 0.1; renderToTarget 40 30; pushModelViewMatrix; setModelViewMatrix 1 0 0 1 0 0; "
              "pushClipRect 0 0 20 10; pushTechnique 4; turnOnDrawQuads; setOpacity 0.2; popTechnique; popClipRect; "
              "popModelViewMatrix; setOpacity 0.9; setOpacity 1");
    EXPECT_EQ(target.use_count(), 1);
}

TEST_F(CommandPlayback, matricesMultiplyFromTheLeft) {
    vtxRenderer::get()->setScale(2.0f);
    EXPECT_EQ(operationsRecorded([](GraphicCommands& list) {
                  osg::Matrixf const shift = osg::Matrixf::translate(3, 4, 0);
                  osg::Matrixf const turn(0, 1, 0, 0, -1, 0, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1);
                  GraphicCommandModelViewMatrixGuard guard(&list);
                  list.setModelViewMatrix(turn);
                  list.preMultModelViewMatrix(shift);
                  guard.setRotate(0.0f, 0, 0, 0);
                  guard.setTranslate(1, 0, 0);
                  guard.setIdentity();
              }),
              "pushModelViewMatrix; setModelViewMatrix 0 1 -1 0 0 0; setModelViewMatrix 0 1 -1 0 -4 3; "
              "setModelViewMatrix 0 1 -1 0 -4 3; setModelViewMatrix 0 1 -1 0 -2 3; setModelViewMatrix 1 0 0 1 0 0; "
              "popModelViewMatrix");
}

TEST_F(CommandPlayback, aPlaceIsAModelViewThatTranslatesWithAClipInside) {
    vtxRenderer* const renderer = vtxRenderer::get();
    renderer->setScale(1.5f);
    auto const rect = osg::RectImpl<osg::Vec2i>(1, 2, 30, 40);
    osg::RectImpl<osg::Vec2i> const* const clips[] = {&rect, nullptr};
    osg::Matrixf const outer[] = {osg::Matrixf::translate(0.3f, -0.0f, 2), osg::Matrixf::rotate(0.5, 0, 0, 1)};
    for (auto const* clip : clips) {
        for (osg::Matrixf const& matrix : outer) {
            osg::Matrixf found;
            auto const byPlace = [&](GraphicCommands& list) {
                list.setModelViewMatrix(matrix);
                GraphicCommandPlaceGuard const guard(&list, osg::Vec2i(7, -3), clip);
                list.drawFunc([&] { found = renderer->getModelViewMatrix(); }, osg::Vec2i(), {});
            };
            std::string const expected = operations([&] {
                renderer->setModelViewMatrix(matrix);
                vtxRenderer::ModelViewMatrixGuard guard;
                guard.setTranslate(7, -3, 0);
                std::optional<vtxRenderer::ClipRectGuard> inside;
                if (clip)
                    inside.emplace(*clip);
                found = renderer->getModelViewMatrix();
            });
            osg::Matrixf const expectedMatrix = found;
            EXPECT_EQ(operationsRecorded(byPlace), expected);
            // Where nobody listens to operations, the renderer takes a shorter way.
            log->setContractWanted(false);
            found = osg::Matrixf();
            operationsRecorded(byPlace);
            log->setContractWanted(true);
            EXPECT_EQ(found, expectedMatrix);
        }
    }
}

TEST_F(CommandPlayback, aProjectionHoldsUntilItsGuardEnds) {
    vtxShaderQuads quads;
    quads.beginBatch(nullptr, 1);
    quads.addBatchQuad(0.25f, 0, 5, 4, -1);
    quads.endBatch();
    std::string const drawn = quadsRecorded([&](GraphicCommands& list) {
        osg::Vec4f const white(1, 1, 1, 1);
        {
            GraphicCommandProjectionMatrixGuard projection(&list);
            projection.makeOrtho2D(0, 400, 300, 0);
            list.drawQuads(quads, white, -1, -1);
        }
        list.drawQuads(quads, white, -1, -1);
    });
    // On whole pixels, of which a unit of the projection has two.
    EXPECT_EQ(drawn, "at 0.5 0 size 5 4 color 1 1 1 1\nat 0 0 size 5 4 color 1 1 1 1\n");
}

TEST_F(CommandPlayback, aTurnAboutAPivotKeepsThePivotInPlace) {
    vtxShaderQuads quads;
    quads.beginBatch(nullptr, 1);
    quads.addBatchQuad(5, 5, 10, 20, -1);
    quads.endBatch();
    std::string const drawn = quadsRecorded([&](GraphicCommands& list) {
        GraphicCommandModelViewMatrixGuard guard(&list);
        guard.makeTranslate(-5, -5, 0).makeRotate(std::acos(0.0f), 0, 0, -1).setTranslate(105, 55, 0);
        list.drawQuads(quads, osg::Vec4f(1, 1, 1, 1), -1, -1);
    });
    EXPECT_EQ(drawn, "at 105 55 edges 0 -10 20 0 color 1 1 1 1\n");
}

TEST_F(CommandPlayback, recordedTextIsTheCopyOfWhatWasBuilt) {
    vtxTextString string = makeString(L"Text", 10, 40);
    string.bkgColor.set(0, 0, 1, 1);
    string.redraw(-1.0f);
    vtxTextString const original = string;
    vtxShader* const shader = vtxRenderer::get()->getShader();
    osg::Vec4f const green(0, 1, 0, 1);

    GraphicCommands list;
    list.drawText(&string, nullptr, -1.0f);
    list.drawText({&string, &string}, &green, 0.0f);
    string.text = L"Changed";
    string.redraw(-1.0f);
    std::string const expected = quads([&] {
        original.draw(shader, -1.0f);
        original.draw(shader, green, -1.0f);
        original.draw(shader, green, -1.0f);
    });
    EXPECT_NE(expected, "");
    EXPECT_EQ(quads([&] { host::CommandPlayer::play(list); }), expected);
    host::CommandPlayer::release(list);
}

TEST_F(CommandPlayback, aTextCopiedOverItsOwnCopyIsThatOfNow) {
    using Change = void (*)(vtxTextString&);
    constexpr Change changes[] = {
        [](vtxTextString&) {},
        [](vtxTextString& string) { string.color.set(0, 1, 0, 1); },
        [](vtxTextString& string) { string.text = L"Txet"; },
        [](vtxTextString& string) { string.position.set(50, 60); },
        [](vtxTextString& string) { string.font = makeFont(20); },
        [](vtxTextString& string) { string.shadowColor.set(0, 0, 1, 1), string.shadowOffset.set(2, 3); },
        [](vtxTextString& string) { string.bkgColor = string.lineThroughColor = string.color; },
        [](vtxTextString& string) { string.lineThroughHeight = 5, string.lineThroughOffset = 7; },
    };
    vtxShader* const shader = vtxRenderer::get()->getShader();
    for (bool const built : {false, true}) {
        for (Change const change : changes) {
            SCOPED_TRACE(testing::Message() << "change " << &change - changes << (built ? ", built" : ""));
            vtxTextString source = makeString(L"Text", 10, 40);
            source.lineThroughColor.set(1, 0, 0, 1);
            source.redraw(-1.0f);
            vtxTextString copy = source;
            change(source);
            if (built)
                source.redraw(-1.0f);
            copy = source;
            // At another scale both are built anew.
            for (float const scale : {1.0f, 2.0f})
                EXPECT_EQ(quads([&] { copy.draw(shader, scale); }), quads([&] { source.draw(shader, scale); }));
        }
    }
}

TEST_F(CommandPlayback, whatIsRecordedAgainIsWhatItIsNow) {
    vtxTextString string = makeString(L"Text", 10, 40);
    vtxTextString other = makeString(L"Other", 10, 80);
    vtxShaderQuads shapes = makeQuads();
    vtxShaderBkgQuads bkg;
    bkg.addQuad({0, 0, 5, 5, 0, 0, 0, 0});
    bkg.addQuad({5, 0, 5, 5, 0, 0, 0, 0});
    std::vector<osg::Vec4f> colors(9, osg::Vec4f(1, 0, 0, 1));
    auto const drawNow = [&] {
        vtxShader* const shader = vtxRenderer::get()->getShader();
        shader->setColors(colors.front().ptr(), bkg.count);
        bkg.draw(shader);
        string.draw(shader, -1.0f);
        other.draw(shader, -1.0f);
        shader->setColor(colors.front());
        shapes.draw(shader);
    };
    GraphicCommands list;
    auto const record = [&] {
        list.drawBkg(bkg, colors.front().ptr());
        list.drawText(&string, nullptr, -1.0f);
        list.drawText(&other, nullptr, -1.0f);
        list.drawQuads(shapes, colors.front(), 0, -1);
    };
    std::function<void()> const changes[] = {
        [] {},
        [&] { colors[1].set(0, 1, 0, 1); },
        [&] { bkg.count = 1; },
        [&] {
            bkg.addQuad({6, 0, 7, 7, 0, 0, 0, 0});
        },
        [&] { shapes.addBatchQuad(30, 0, 5, 4, -1); },
        [&] { shapes.endBatch(), shapes.beginBatch(nullptr, 0), shapes.addBatchQuad(0, 9, 5, 4, -1); },
        [&] { string = makeString(L"Texts", 10, 40); },
        [&] { bkg.count = 0, string.quads.reset(), shapes.reset(); },
    };
    record();
    for (auto const& change : changes) {
        SCOPED_TRACE(&change - changes);
        qor::vector<GraphicCommand*> const used = list.getCommands();
        host::CommandPlayer::release(list);
        change();
        std::string const now = quads(drawNow);
        record();
        EXPECT_EQ(list.getCommands(), used) << "each step finds what it left";
        // What comes later is not in the list.
        change();
        EXPECT_EQ(quads([&] { host::CommandPlayer::play(list); }), now);
    }
    host::CommandPlayer::release(list);
}

TEST_F(CommandPlayback, textIsCutAtLineFeedsWithoutDecorationOfEarlierUses) {
    GraphicCommands decorated;
    vtxTextString string = makeString(L"x");
    string.bkgColor = string.shadowColor = string.lineThroughColor = string.color;
    decorated.drawText({&string, &string, &string}, nullptr, -1.0f);
    host::CommandPlayer::release(decorated);

    // Moved down, since the first baseline is the top of the screen.
    vtxRenderer::ModelViewMatrixGuard guard;
    guard.setTranslate(0, 100, 0);
    std::shared_ptr<vtxFont> const font = string.font;
    std::string const expected = quads([&] {
        for (vtxTextString const& line : {makeString(L"one"), makeString(L"two", 0, 2 * font->getLineHeight())})
            line.draw(vtxRenderer::get()->getShader(), -1.0f);
    });
    osg::Vec4f const white(1, 1, 1, 1);
    EXPECT_EQ(quadsRecorded([&](GraphicCommands& list) { list.drawText(L"one\n\ntwo\n", font, white, -1.0f); }),
              expected);
    EXPECT_EQ(quadsRecorded([&](GraphicCommands& list) { list.drawText(L"one", nullptr, white, -1.0f); }), "");
}

TEST_F(CommandPlayback, aListRecordedAgainAllocatesNothing) {
    log->setRecording(false);
    vtxRenderer* const renderer = vtxRenderer::get();
    auto const target = makeTarget(64, 64);
    vtxShaderQuads const quads = makeQuads();
    vtxShaderBkgQuads const bkg;
    float const colors[9 * 4] = {};
    osg::Vec4f const color(1, 1, 1, 1);
    qor::vector<vtxVertex> const vertices(3);
    qor::vector<int> const indices = {0, 1, 2};
    vtxTextString string = makeString(L"a text that is longer than a small string");
    qor::vector<vtxTextString*> const strings(6, &string);
    GraphicCommands list;
    auto const record = [&] {
        GraphicCommandClipRectGuard const clip(&list, osg::RectImpl<osg::Vec2i>(0, 0, 99, 99));
        GraphicCommandOpacityGuard const opacity(&list, 0.5f);
        GraphicCommandProjectionMatrixGuard projection(&list);
        projection.makeOrtho2D(0, 800, 600, 0);
        GraphicCommandModelViewMatrixGuard guard(&list);
        guard.makeTranslate(1, 1, 0).makeRotate(1, 0, 0, 1).setTranslate(1, 1, 0);
        ScratchGraphicCommands inner;
        inner->drawBkg(bkg, colors);
        inner->drawText(strings, &color, -1.0f);
        list.drawToTarget(target, osg::Vec2i(64, 64), inner->getCommands());
        list.drawQuads(quads, color, 0, -1);
        list.add(GraphicCommandDrawCircle::fetch()->set(color, 5, 32));
        list.drawText(L"some line\nanother line", string.font, color, -1.0f);
        list.add(
            GraphicCommandDrawGeometry::fetch()->set(vertices, indices, vtxGeometry::PrimitiveTriangles, 1, nullptr));
        list.drawFunc([renderer] { renderer->setOpacity(0.5f); }, osg::Vec2i(), {});
        list.parse([renderer] { renderer->setOpacity(1.0f); });
    };
    auto const runOnce = [&] {
        record();
        renderer->beginDraw(vtxRenderer::TechniqueNormal);
        host::CommandPlayer::play(list);
        renderer->endDraw();
        host::CommandPlayer::release(list);
    };
    runOnce();
    runOnce();
    support::HeapScope const heap;
    runOnce();
    EXPECT_EQ(heap.getAllocations(), 0u);
}

}  // namespace
