#pragma once

#include <tuple>

#include "gui_lib/Skin/Bkg.h"
#include "gui_lib/Skin/Image.h"
#include "gui_lib/Skin/Text.h"

namespace gui::skin {

/// The fields of a look, each of which a program may have changed by itself.
template <class Info>
inline constexpr auto lookFields = std::tuple();

template <>
inline constexpr auto lookFields<Bkg::Info> = std::tuple(&Bkg::Info::file, &Bkg::Info::rect, &Bkg::Info::insets,
                                                         &Bkg::Info::cellColors);

template <>
inline constexpr auto lookFields<Image::Info> = std::tuple(&Image::Info::file, &Image::Info::color, &Image::Info::align,
                                                           &Image::Info::size, &Image::Info::rect,
                                                           &Image::Info::userTexSampler, &Image::Info::resizeToFill,
                                                           &Image::Info::tileHorizontally,
                                                           &Image::Info::tileVertically);

template <>
inline constexpr auto lookFields<Text::Info> = std::tuple(&Text::Info::font, &Text::Info::fontSize,
                                                          &Text::Info::lineHeight, &Text::Info::lineThroughHeight,
                                                          &Text::Info::lineThroughOffset, &Text::Info::blur,
                                                          &Text::Info::color, &Text::Info::bkgColor,
                                                          &Text::Info::shadowColor, &Text::Info::blurColor,
                                                          &Text::Info::lineThroughColor, &Text::Info::shadowOffset,
                                                          &Text::Info::align);

/// What a program has changed in a look stays when the skin is reloaded: `was` is the look in force, `before` what the
/// skin had given, `after` what it gives now; any may be null. Calls `set` with the look, or null for none, if it must
/// differ from `after`.
template <class Info, class Set>
void keepLookChanges(Info const* was, Info const* before, Info const* after, Set const& set) {
    if (was == before || (was && before && *was == *before))
        return;
    if (!was || !before || !after) {
        set(was);
        return;
    }
    Info merged = *after;
    std::apply(
        [&](auto... fields) {
            ((was->*fields == before->*fields ? void() : void(merged.*fields = was->*fields)), ...);
        },
        lookFields<Info>);
    set(&merged);
}

}  // namespace gui::skin
