// Bytes as lists of graphic commands and the order in which they are prepared, drawn, released and recorded anew: no
// misuse, the same stream when played again, and every command back in its pool.
#include "gui_lib/graphics/GraphicCommandGuards.h"
#include "gui_lib/graphics/GraphicCommands.h"
#include "gui_lib/graphics/ScratchGraphicCommands.h"
#include "gui_lib/graphics/commands/GraphicCommandDrawBkg.h"
#include "gui_lib/graphics/commands/GraphicCommandDrawFunc.h"
#include "gui_lib/graphics/commands/GraphicCommandDrawGeometry.h"
#include "gui_lib/graphics/commands/GraphicCommandDrawQuads.h"
#include "gui_lib/graphics/commands/GraphicCommandDrawShapes.h"
#include "gui_lib/graphics/commands/GraphicCommandDrawText.h"
#include "gui_lib/graphics/commands/GraphicCommandDrawToTarget.h"
#include "gui_lib/graphics/commands/GraphicCommandMatrices.h"
#include "gui_lib/graphics/commands/GraphicCommandModelViewMatrix.h"
#include "gui_lib/graphics/commands/GraphicCommandParse.h"
#include "gui_lib/graphics/commands/GraphicCommandProjectionMatrix.h"
#include "gui_lib/graphics/commands/GraphicCommandRects.h"
#include "gui_lib/graphics/commands/GraphicCommandStates.h"
#include "gui_lib/graphics/commands/GraphicCommandTechniques.h"
#include "host/CommandPlayer.h"
#include "platform/vtx/vtxFrameBuffer.h"
#include "platform/vtx/vtxShader.h"
#include "platform/vtx/vtxTextString.h"
#include "platform/vtx/vtxTexture.h"
#include "platform/vtx/vtxTextureManager.h"
#include "tests/fuzz/shared/FuzzHost.h"

namespace {

using namespace gui;
using Rect = osg::RectImpl<osg::Vec2i>;

/// What commands show; lives as long as the renderer.
struct Things {
    vtxTexture* picture =
        vtxRenderer::get()->getTextureManager()->getTexture("tests/graphics/picture.png", {}, nullptr);
    vtxTexture* part =
        vtxRenderer::get()->getTextureManager()->getTexture("tests/graphics/picture.png", Rect(1, 1, 3, 2), nullptr);
    std::shared_ptr<vtxFont> font = vtxRenderer::get()->getFontManager()->getFont("fonts/Inter-Regular.otf", 14, {});
    std::shared_ptr<vtxFont> soft =
        vtxRenderer::get()->getFontManager()->getFont("fonts/Inter-Regular.otf", 20, vtxFont::BlurLarge);
};

Things& getThings() {
    static Things things;
    return things;
}

/// Records what the bytes say; at most `mostSteps` commands and guards.
class Recorder {
public:
    explicit Recorder(fuzz::FuzzInput& input) : input_(input) {}

    /// `target` is the one that the list is for, if any.
    void record(GraphicCommands& list, int depth = 0) {
        for (size_t left = input_.pick(12); left > 0 && stepsLeft_ > 0; --left, --stepsLeft_) {
            size_t const step = input_.pick(depth < 5 ? 24 : 15);
            if (step < 9)
                recordDrawing_(list, step);
            else if (step < 15)
                recordState_(list, step);
            else
                recordScope_(list, step, depth + 1);
        }
    }

private:
    static constexpr int mostSteps = 80;

    Rect getRect_() { return {input_.getInt(), input_.getInt(), input_.getInt(), input_.getInt()}; }
    osg::Vec4f getColor_() {
        return {float(input_.getByte()) / 255.0f, 0.5f, float(input_.getByte()) / 200.0f, float(input_.pick(5)) / 4.0f};
    }
    vtxRenderer::TechniqueType getTechnique_() {
        constexpr vtxRenderer::TechniqueType all[] = {vtxRenderer::TechniqueNormal, vtxRenderer::TechniqueTarget,
                                                      vtxRenderer::TechniqueTargetVR};
        return all[input_.pick(3)];
    }
    vtxTexture* getTexture_() {
        vtxTexture* const all[] = {nullptr, getThings().picture, getThings().part};
        return all[input_.pick(3)];
    }
    /// Products of any number of these stay finite.
    osg::Matrixf getMatrix_() {
        osg::Matrixf matrix;
        if (input_.getFlag())
            matrix.makeRotate(input_.getFloat(), osg::Vec3f(0, 0, 1));
        else
            matrix.makeScale(float(input_.pick(3)) * 0.5f, -1.0f, 1.0f);
        return matrix * osg::Matrixf::translate(input_.getFloat(), input_.getFloat(), 0.0f);
    }
    std::wstring getText_() {
        std::wstring text;
        for (size_t left = input_.pick(12); left > 0; --left)
            text += input_.getFlag() ? wchar_t(input_.getByte()) : L"\n\tA\x301\x5D0\xFFFD\x1F600"[input_.pick(8)];
        return text;
    }

    void recordDrawing_(GraphicCommands& list, size_t step) {
        switch (step) {
            case 0: {
                vtxShaderBkgQuads quads;
                quads.setTexture(getTexture_());
                for (size_t left = input_.pick(11); left > 0; --left)
                    quads.addQuad({input_.getFloat(), input_.getFloat(), input_.getFloat(), 8, 0, 0, 1, 0.5f});
                float colors[36];
                std::fill(std::begin(colors), std::end(colors), float(input_.pick(3)) * 0.5f);
                list.drawBkg(quads, colors);
                break;
            }
            case 1: {
                vtxShaderQuads quads;
                size_t const batches = input_.pick(3);
                for (size_t left = batches; left > 0; --left) {
                    quads.beginBatch(getTexture_(), input_.getInt());
                    quads.addBatchQuad(input_.getFloat(), 1, input_.getFloat(), input_.getFloat(), -1);
                    quads.addBatchTexCoords(input_.getFloat(), 0, 1, 1);
                    quads.endBatch();
                }
                list.drawQuads(quads, getColor_(), int(input_.pick(6)) - 1,
                               batches ? int(input_.pick(batches + 1)) - 1 : -1);
                break;
            }
            case 2:
                list.drawText(getText_(), input_.getFlag() ? getThings().font : nullptr, getColor_(),
                              float(input_.pick(4)) * 0.75f);
                break;
            case 3: {
                vtxTextString string;
                string.font = input_.getFlag() ? getThings().soft : getThings().font;
                string.color = string.blurColor = getColor_();
                string.bkgColor = string.shadowColor = string.lineThroughColor = getColor_();
                string.text = getText_();
                string.textLength = int(string.text.size());
                string.position.set(input_.getInt(), input_.getInt());
                if (input_.getFlag())
                    string.redraw(-1.0f);
                osg::Vec4f const color = getColor_();
                list.drawText(&string, input_.getFlag() ? &color : nullptr, float(input_.pick(3)));
                break;
            }
            case 4:
                list.drawFunc(
                    [] {
                        vtxRenderer::get()->getShader()->setColor({1, 1, 1, 1});
                    },
                    osg::Vec2i(input_.getInt(), 5), [](osg::Vec2i const&) {});
                break;
            case 5:
                list.parse([] {});
                break;
            case 6:
                list.add(GraphicCommandDrawCircle::fetch()->set(getColor_(), input_.getFloat(), input_.getByte()));
                break;
            case 7:
                list.add(GraphicCommandDrawLifeBar::fetch()->set(
                    getColor_(), osg::Vec2f(input_.getFloat(), input_.getFloat()), input_.getFloat()));
                break;
            default:
                recordGeometry_(list);
        }
    }

    void recordGeometry_(GraphicCommands& list) {
        qor::vector<vtxVertex> vertices(input_.pick(6));
        for (vtxVertex& vertex : vertices)
            vertex = {input_.getFloat(), input_.getFloat(), 0, 1, 0, 1, 1, input_.getFloat(), 0.5};
        qor::vector<int> indices(vertices.empty() ? 0 : input_.pick(10));
        for (int& index : indices)
            index = int(input_.pick(vertices.size()));
        auto const type = vtxGeometry::PrimitiveType(input_.pick(4));
        size_t const most[] = {indices.size(), indices.size() / 2, indices.empty() ? 0 : indices.size() - 1,
                               indices.size() / 3};
        int const count = int(input_.pick(most[type] + 1));
        list.add(GraphicCommandDrawGeometry::fetch()->set(vertices, indices, type, count, getTexture_()));
        list.drawFunc([] { vtxRenderer::get()->getShader()->turnOnDrawQuads(); }, {}, {});
    }

    void recordState_(GraphicCommands& list, size_t step) {
        switch (step) {
            case 9:
                return list.setOpacity(input_.getFloat());
            case 10:
                return list.shiftPosition(input_.getFloat(), input_.getFloat(), float(input_.pick(3)));
            case 11:
                return list.setModelViewMatrix(getMatrix_());
            case 12:
                return list.preMultModelViewMatrix(getMatrix_());
            case 13:
                return list.setProjectionMatrix(getMatrix_());
            default:
                return list.add(GraphicCommandSetTextureFiltering::fetch()->set(
                    static_cast<vtxRenderer::TextureSampler>(input_.pick(4))));
        }
    }

    void recordScope_(GraphicCommands& list, size_t step, int depth) {
        switch (step) {
            case 15: {
                GraphicCommandClipRectGuard const guard(&list, getRect_());
                return record(list, depth);
            }
            case 16: {
                GraphicCommandViewportGuard const guard(&list, getRect_());
                return record(list, depth);
            }
            case 17: {
                GraphicCommandOpacityGuard const guard(&list, input_.getFloat());
                return record(list, depth);
            }
            case 18: {
                GraphicCommandShaderTechniqueGuard const guard(&list, getTechnique_());
                return record(list, depth);
            }
            case 19: {
                GraphicCommandShiftPositionGuard const guard(&list, input_.getFloat(), input_.getFloat(), 1.0f);
                return record(list, depth);
            }
            case 20: {
                GraphicCommandProjectionMatrixGuard guard(&list);
                guard.makeOrtho2D(0.0f, 1.0f + float(input_.getByte()), 1.0f + float(input_.getByte()), 0.0f);
                return record(list, depth);
            }
            case 21:
            case 22: {
                GraphicCommandModelViewMatrixGuard guard(&list);
                guard.makeTranslate(input_.getFloat(), input_.getFloat(), 0).makeRotate(input_.getFloat(), 0, 0, 1);
                if (input_.getFlag())
                    guard.setTranslate(1, 2, 0);
                return record(list, depth);
            }
            default:
                return recordTarget_(list, depth);
        }
    }

    void recordTarget_(GraphicCommands& list, int depth) {
        osg::Vec2i const size(int(input_.getByte()) - 8, int(input_.getByte()) - 8);
        std::shared_ptr<vtxFrameBuffer> target(
            vtxRenderer::get()->createFrameBuffer(size, int(input_.pick(5)), int(input_.pick(3))));
        {
            ScratchGraphicCommands inner;
            record(*inner.get(), depth);
            list.drawToTarget(target, osg::Vec2i(input_.getInt(), input_.getInt()), inner->getCommands());
            host::CommandPlayer::parse(*inner.get());
            for (GraphicCommandParse* const command : inner->getParseCommands())
                command->release();
        }
        if (!target)
            return;
        vtxShaderQuads quads;
        quads.beginBatch(target->getTexture(), 1);
        quads.addBatchQuad(0, 0, input_.getFloat(), 20, -1);
        quads.endBatch();
        list.drawQuads(quads, getColor_(), 0, -1);
    }

    fuzz::FuzzInput& input_;
    int stepsLeft_ = mostSteps;
};

template <class Function>
void inPass(Function function) {
    vtxRenderer& renderer = *vtxRenderer::get();
    Rect const all(0, 0, 800, 600);
    vtxRenderer::ViewportGuard const viewport(all);
    vtxRenderer::ClipRectGuard const clip(all);
    vtxRenderer::ProjectionMatrixGuard projection;
    projection.makeOrtho2D(0.0f, 800.0f, 600.0f, 0.0f);
    vtxRenderer::ModelViewMatrixGuard modelView;
    modelView.setIdentity();
    renderer.beginDraw(vtxRenderer::TechniqueNormal);
    renderer.setOpacity(1.0f);
    renderer.setTextureFiltering(vtxRenderer::SamplerLinear);
    renderer.getShader()->resetPositionShift();
    renderer.getShader()->turnOnDrawQuads();
    function();
    renderer.endDraw();
}

qor::string tracePlay(GraphicCommands const& list) {
    vtxTraceLog& log = fuzz::getHost().trace();
    log.clearLines();
    log.setRecording(true);
    inPass([&] { host::CommandPlayer::play(list); });
    log.setRecording(false);
    return log.getText();
}

/// Plays two lists in the order that the bytes say.
void playInAnyOrder(fuzz::FuzzInput& input, Recorder& recorder, GraphicCommands (&lists)[2]) {
    using host::CommandPlayer;
    bool prepared[2] = {};
    for (size_t left = input.pick(10); left > 0; --left) {
        size_t const which = input.pick(2);
        GraphicCommands& list = lists[which];
        switch (input.pick(5)) {
            case 0:
                CommandPlayer::parse(list);
                CommandPlayer::doRedraw(list);
                prepared[which] = true;
                break;
            case 1:
                if (prepared[which])
                    inPass([&] { CommandPlayer::draw(list); });
                break;
            case 2:
                inPass([&] { CommandPlayer::play(list); });
                prepared[which] = true;
                break;
            case 3:
                CommandPlayer::release(list);
                recorder.record(list);
                prepared[which] = false;
                break;
            default:
                vtxRenderer::get()->getFontManager()->doRedraw();
                vtxRenderer::get()->getTextureManager()->flushReleased();
        }
    }
}

template <class... Commands>
void checkPools() {
    qor::setLogSink([](char const*, int, char const* text) {
        int all = -1, idle = -2;
        char name[80];
        std::sscanf(text, "~~~ %79s all:%d free:%d", name, &all, &idle);
        fuzz::check(all == idle, text);
    });
    (Commands::stat(), ...);
    fuzz::muteLog();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(uint8_t const* data, size_t size) {
    support::ZooHost& host = fuzz::getHost();
    fuzz::FuzzInput input(data, size);
    Recorder recorder(input);
    GraphicCommands lists[2];
    for (GraphicCommands& list : lists)
        recorder.record(list);
    playInAnyOrder(input, recorder, lists);
    for (GraphicCommands& list : lists) {
        // The first time makes glyphs, and the second may send those that were not seen.
        for (int time = 0; time < 2; ++time)
            inPass([&] { host::CommandPlayer::play(list); });
        qor::string const played = tracePlay(list);
        fuzz::check(tracePlay(list) == played, "a list that is played again gives the same stream");
        host::CommandPlayer::release(list);
    }
    fuzz::checkMisuse(host.trace());
    checkPools<GraphicCommandDrawBkg, GraphicCommandDrawFunc, GraphicCommandDrawGeometry, GraphicCommandDrawQuads,
               GraphicCommandDrawCircle, GraphicCommandDrawLifeBar, GraphicCommandDrawText, GraphicCommandDrawToTarget,
               GraphicCommandSetModelViewMatrix, GraphicCommandPreMultModelViewMatrix, GraphicCommandModelViewMatrix,
               GraphicCommandParse, GraphicCommandProjectionMatrix, GraphicCommandPushClipRect,
               GraphicCommandPopClipRect, GraphicCommandPushViewport, GraphicCommandPopViewport,
               GraphicCommandSetTextureFiltering, GraphicCommandSetOpacity, GraphicCommandShiftPosition,
               GraphicCommandPushShaderTechnique, GraphicCommandPopShaderTechnique>();
    vtxRenderer::get()->getTextureManager()->flushReleased();
    return 0;
}
