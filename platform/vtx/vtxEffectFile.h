#pragma once

#include <string_view>

#include "platform/qor/Api.h"
#include "platform/qor/Containers.h"
#include "platform/qor/String.h"

/// An effect file taken apart: its parameters and the two pieces of shader text. Knows nothing of any graphics
/// interface, so that every back end reads the same form, which docs/renderer.md describes.
struct VORLEX_API vtxEffectFile {
    struct Parameter {
        qor::string name;
        int count = 1;  ///< elements; above 1, or with `array`, an array
        bool array = false;
        float defaultValue = 0.0f;  ///< of every element
    };
    struct Section {
        qor::string text;
        int line = 0;  ///< line of the file that `text` begins with, from 1; 0: the section is missing
    };

    static constexpr int maxParameters = 64;
    static constexpr int maxElements = 256;

    qor::vector<Parameter> parameters;
    Section vertex;
    Section fragment;

    /// Index of a parameter, -1 if there is none of that name.
    int findParameter(std::string_view name) const;

    /// Finds and reads the file. On failure `error` is "path:line: cause", or a cause with the path where there is no
    /// line.
    bool read(char const* path, qor::string& error);
    /// The same from text; `path` only stands in messages.
    bool parse(std::string_view path, std::string_view text, qor::string& error);
};
