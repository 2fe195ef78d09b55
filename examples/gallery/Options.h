#pragma once

#include <osg/Vec2i>

#include <string>

/// What the command line asks for.
struct Options {
    bool help = false;
    bool headless = false;
    bool still = false;
    /// Watch files headless too.
    bool watch = false;
    /// "gl", "es" or "trace"; headless only.
    std::string backEnd = "gl";
    std::string skin = "dark";
    float scale = 0.0f;
    osg::Vec2i size{1440, 900};
    std::string out = "out/gallery";
    /// Files; empty if not asked for.
    std::string record;
    std::string replay;
};

/// False, with a line for the user in `error`, if an option is unknown or its value makes no sense.
bool parseOptions(int count, char const* const* words, Options& options, std::string& error);

extern char const* const usage;
