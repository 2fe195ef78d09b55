#pragma once

#include <functional>
#include <memory>
#include <string_view>
#include <utility>

#include "gui_lib/base/UpdateTarget.h"
#include "platform/qor/Api.h"
#include "platform/qor/Containers.h"
#include "platform/qor/String.h"

namespace gui {

class GUI;

namespace skin {

class ShaderEffect;
class ShaderEffectAlpha;
class ShaderEffectAppearQuads;
class ShaderEffectFlickerQuads;
class ShaderEffectShowMsg;

/// Makes shader effects by name, keeps them for reuse and drives their clock.
/// Effects come in kinds, each with a name and a function that makes one: "alpha", "showMsg", "flickerQuads",
/// "appearQuads", and what a host adds.
/// Lifetime: made and ended by GUI; all effects die with it.
class VORLEX_API ShaderEffectManager {
public:
    /// Makes an effect, which the manager owns from then on.
    using Factory = std::function<ShaderEffect*()>;

    /// Exists between GUI::create and GUI::destroy only.
    static ShaderEffectManager& get();
    static bool exists();

    /// Adds a kind and returns its number. Kinds are ticked in the order of their addition. The kind of a known name is
    /// returned as it stands.
    int addKind(std::string_view name, Factory factory);

    /// An effect of a kind, which starts now; idle ones are used again. An unknown name (case matters) is logged and
    /// gives null.
    ShaderEffect* getEffect(char const* name);
    ShaderEffect* getEffect(int kind);
    ShaderEffectAlpha* getAlphaEffect();
    ShaderEffectShowMsg* getShowMsgEffect();
    ShaderEffectFlickerQuads* getFlickerQuadsEffect();
    ShaderEffectAppearQuads* getAppearQuadsEffect();
    /// Makes an effect idle; it stays alive for its next use. Anything that is not in use is ignored.
    void destroyEffect(ShaderEffect* effect);
    void destroyAlphaEffect(ShaderEffectAlpha* effect);
    void destroyShowMsgEffect(ShaderEffectShowMsg* effect);
    void destroyFlickerQuadsEffect(ShaderEffectFlickerQuads* effect);
    void destroyAppearQuadsEffect(ShaderEffectAppearQuads* effect);
    bool getInUse(ShaderEffect const* effect) const;
    /// The name of the kind of an effect that is in use; null for anything else.
    char const* getName(ShaderEffect const* effect) const;

private:
    friend class gui::GUI;

    /// The toolkit's own, in the order in which they are ticked.
    enum { KindAlpha, KindShowMsg, KindFlickerQuads, KindAppearQuads };
    struct EffectSlot {
        ShaderEffect* effect = nullptr;
        bool inUse = false;
    };
    struct Kind {
        qor::basic_string<char> name;
        Factory factory;
        qor::vector<EffectSlot> slots;
        std::size_t firstIdle = 0;  ///< no slot before it is idle
    };
    class Target final : public UpdateTarget {
    public:
        explicit Target(std::function<void(double)> function) : function_(std::move(function)) {}
        void update(double time) override { function_(time); }

    private:
        std::function<void(double)> function_;
    };

    ShaderEffectManager();
    ~ShaderEffectManager();
    ShaderEffectManager(ShaderEffectManager const&) = delete;
    ShaderEffectManager& operator=(ShaderEffectManager const&) = delete;
    static void create_();
    static void destroy_();

    void updateEffects_(double time);
    int findKind_(std::string_view name) const;
    EffectSlot* findSlot_(ShaderEffect const* effect) const;
    void releaseSkins_();
    static void releaseSkin_(ShaderEffect& effect);

    static ShaderEffectManager* instance_;

    Target target;
    qor::vector<std::unique_ptr<Kind>> kinds;
};

}  // namespace skin
}  // namespace gui
