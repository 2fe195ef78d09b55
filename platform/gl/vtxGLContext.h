#pragma once

#include "platform/qor/String.h"

/// Internal to the GL back end: what the current context is and what it can do, read once.
struct vtxGLContext {
    bool es = false;
    int version = 0;  ///< 33 for 3.3
    bool debug = false;
    bool clipControl = false;
    bool srgbControl = false;         ///< GL_FRAMEBUFFER_SRGB exists
    bool indexedBlendEnable = false;  ///< blend switch and colour mask for each draw buffer
    bool indexedBlendFunction = false;
    bool multiBind = false;     ///< several texture units by one call
    bool baseInstance = false;  ///< a draw may begin anywhere in the instances
    int drawBuffers = 1;
    int maxTextureSize = 0;
    int maxLayers = 0;
    int maxSamples = 0;

    /// False, with cause and remedy in `error`, where no context is current or it is too old.
    bool read(qor::string& error);
    /// Whether any of the window systems' libraries in this process has a context current on this thread.
    static bool isAnyCurrent();
};

/// Log tag and level of the back end.
inline constexpr char const* vtxGLTag = "VORLEX-GL";
inline constexpr int vtxGLErrorLevel = 64;
