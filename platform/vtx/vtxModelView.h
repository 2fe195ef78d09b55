#pragma once

#include <cstring>

#include "platform/vtx/vtxDrawSettings.h"

/// Internal: a model-view that waits on its stack. Its axes count only if they are not those of the identity.
struct vtxModelView {
    void keep(vtxDrawSettings const& settings) {
        float const* const elements = settings.modelView.ptr();
        translates = settings.modelViewTranslates;
        std::memcpy(place, elements + 12, sizeof(place));
        if (!translates)
            std::memcpy(axes, elements, sizeof(axes));
    }
    void apply(vtxDrawSettings& settings) const {
        if (translates && !settings.modelViewTranslates)
            settings.modelView.makeIdentity();
        float* const elements = settings.modelView.ptr();
        std::memcpy(elements + 12, place, sizeof(place));
        if (!translates)
            std::memcpy(elements, axes, sizeof(axes));
        settings.modelViewTranslates = translates;
    }

    float place[4];
    float axes[12];
    bool translates;
};
