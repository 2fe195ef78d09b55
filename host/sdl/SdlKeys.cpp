#include "host/sdl/SdlKeys.h"

#include <SDL_keycode.h>

#include <algorithm>
#include <utility>

namespace host {

namespace {

constexpr std::pair<int, int> keys[] = {
    {SDLK_CLEAR, 12},         {SDLK_PAUSE, 19},     {SDLK_KP_0, 256},        {SDLK_KP_1, 257},
    {SDLK_KP_2, 258},         {SDLK_KP_3, 259},     {SDLK_KP_4, 260},        {SDLK_KP_5, 261},
    {SDLK_KP_6, 262},         {SDLK_KP_7, 263},     {SDLK_KP_8, 264},        {SDLK_KP_9, 265},
    {SDLK_KP_PERIOD, 266},    {SDLK_KP_COMMA, 266}, {SDLK_KP_DIVIDE, 267},   {SDLK_KP_MULTIPLY, 268},
    {SDLK_KP_MINUS, 269},     {SDLK_KP_PLUS, 270},  {SDLK_KP_ENTER, 271},    {SDLK_KP_EQUALS, 272},
    {SDLK_UP, 273},           {SDLK_DOWN, 274},     {SDLK_RIGHT, 275},       {SDLK_LEFT, 276},
    {SDLK_INSERT, 277},       {SDLK_HOME, 278},     {SDLK_END, 279},         {SDLK_PAGEUP, 280},
    {SDLK_PAGEDOWN, 281},     {SDLK_F1, 282},       {SDLK_F2, 283},          {SDLK_F3, 284},
    {SDLK_F4, 285},           {SDLK_F5, 286},       {SDLK_F6, 287},          {SDLK_F7, 288},
    {SDLK_F8, 289},           {SDLK_F9, 290},       {SDLK_F10, 291},         {SDLK_F11, 292},
    {SDLK_F12, 293},          {SDLK_F13, 294},      {SDLK_F14, 295},         {SDLK_F15, 296},
    {SDLK_NUMLOCKCLEAR, 300}, {SDLK_CAPSLOCK, 301}, {SDLK_SCROLLLOCK, 302},  {SDLK_RSHIFT, 303},
    {SDLK_LSHIFT, 304},       {SDLK_RCTRL, 305},    {SDLK_LCTRL, 306},       {SDLK_RALT, 307},
    {SDLK_LALT, 308},         {SDLK_LGUI, 311},     {SDLK_RGUI, 312},        {SDLK_MODE, 313},
    {SDLK_APPLICATION, 319},  {SDLK_HELP, 315},     {SDLK_PRINTSCREEN, 316}, {SDLK_SYSREQ, 317},
    {SDLK_CANCEL, 318},       {SDLK_MENU, 319},     {SDLK_POWER, 320},       {SDLK_CURRENCYUNIT, 321},
};

}  // namespace

gui::KeyboardButton getKeyFromSdl(int sdlKeyCode) {
    // Characters have their own numbers in both.
    if ((sdlKeyCode > 0 && sdlKeyCode < 128) || (sdlKeyCode >= 160 && sdlKeyCode <= 255))
        return static_cast<gui::KeyboardButton>(sdlKeyCode);
    if (sdlKeyCode == 0x20ac)
        return static_cast<gui::KeyboardButton>(321);
    auto const found = std::find_if(std::begin(keys), std::end(keys),
                                    [sdlKeyCode](auto const& entry) { return entry.first == sdlKeyCode; });
    return found == std::end(keys) ? gui::KeyNone : static_cast<gui::KeyboardButton>(found->second);
}

}  // namespace host
