#include "gui_lib/base/Keyboard.h"

#include "platform/qor/Containers.h"

#include <cstdio>
#include <utility>

namespace gui {

namespace {

using NumberToName = qor::hash_map<int, qor::basic_string<char>>;
using NameToNumber = qor::hash_map<qor::basic_string<char>, int>;

NumberToName& numberToName() {
    static NumberToName map;
    return map;
}

NameToNumber& nameToNumber() {
    static NameToNumber map;
    return map;
}

void add(int code, qor::basic_string<char> const& name) {
    numberToName()[code] = name;
    nameToNumber()[name] = code;
}

void addNumbered(int first, int last, char const* format) {
    for (int code = first; code <= last; ++code) {
        char name[16];
        std::snprintf(name, sizeof(name), format, code - first);
        add(code, name);
    }
}

void addCharacters(int first, int last) {
    for (int code = first; code <= last; ++code)
        add(code, qor::basic_string<char>(1, static_cast<char>(code)));
}

constexpr std::pair<int, char const*> namedKeys[] = {
    {8, "backspace"},      {9, "tab"},           {12, "clear"},        {13, "return"},      {19, "pause"},
    {27, "escape"},        {32, "space"},        {127, "delete"},      {266, "[.]"},        {267, "[/]"},
    {268, "[*]"},          {269, "[-]"},         {270, "[+]"},         {271, "enter"},      {272, "equals"},
    {273, "up"},           {274, "down"},        {275, "right"},       {276, "left"},       {277, "insert"},
    {278, "home"},         {279, "end"},         {280, "page up"},     {281, "page down"},  {300, "numlock"},
    {301, "caps lock"},    {302, "scroll lock"}, {303, "right shift"}, {304, "left shift"}, {305, "right ctrl"},
    {306, "left ctrl"},    {307, "right alt"},   {308, "left alt"},    {309, "right meta"}, {310, "left meta"},
    {311, "left super"},   {312, "right super"}, {313, "alt gr"},      {314, "compose"},    {315, "help"},
    {316, "print screen"}, {317, "sys req"},     {318, "break"},       {319, "menu"},       {320, "power"},
    {321, "euro"},
};

}  // namespace

void registerKeyboardButtonsNames() {
    for (auto const& [code, name] : namedKeys)
        add(code, name);
    addCharacters(33, 36);
    addCharacters(38, 64);
    addCharacters(91, 122);
    addNumbered(160, 255, "world %d");
    addNumbered(256, 265, "[%d]");
    for (int code = 282; code <= 296; ++code) {
        char name[8];
        std::snprintf(name, sizeof(name), "f%d", code - 281);
        add(code, name);
    }
}

KeyboardButton getKeyboardButtonByName(qor::basic_string<char> const& name) {
    auto found = nameToNumber().find(name);
    return found == nameToNumber().end() ? KeyNone : static_cast<KeyboardButton>(found->second);
}

char const* getKeyboardButtonName(KeyboardButton button) {
    auto found = numberToName().find(button);
    return found == numberToName().end() ? "unknown" : found->second.c_str();
}

}  // namespace gui
