#pragma once

#include <memory>

#include "platform/qor/Containers.h"
#include "platform/qor/String.h"

struct lua_State;

namespace gui::skin {

class Data;
class Skin;

/// Brings every skin that was loaded by name in line with another run of the skin file: it then is as if loaded from
/// that at the start, but for what the program has changed since. While it reads, skins hand their tables to it instead
/// of taking them over. Lifetime: one at a time, within one call.
class SkinReload {
public:
    /// `held`: how many values at the bottom of the Lua stack are the results of the run before and, on top of these,
    /// its table "Skin". Those of the new run take their places; what it returns beyond that is not kept.
    SkinReload(lua_State* L, int held);
    ~SkinReload();
    SkinReload(SkinReload const&) = delete;
    SkinReload& operator=(SkinReload const&) = delete;

    /// False, with the cause in `error`, if the file, or a function of it that is in use, fails; nothing has changed
    /// then. Marks no widget.
    bool run(qor::string const& file, qor::string& error);

    /// The one that reads at this moment, or null.
    static SkinReload* getRunning() { return running_; }
    /// Reads the table on the top of the stack, which a skin would read into `target`.
    void read(lua_State* L, Data& target);

private:
    /// What the skin file gives to one data, by the run before and by the new one; null for nothing.
    struct Content {
        std::unique_ptr<Data> before;
        std::unique_ptr<Data> after;
    };

    void findNames_();
    bool pushTables_(bool wanted, qor::string& error);
    void readAll_(std::unique_ptr<Data> Content::*side);
    void hold_(int height);
    void apply_();
    static std::unique_ptr<Data> makeNew_(Data const& source);

    static SkinReload* running_;

    lua_State* state_;
    int held_;
    lua_State* scratch_;
    qor::vector<qor::string> names_;
    qor::hash_map<Data*, Content> contents_;
    std::unique_ptr<Data> Content::*side_ = nullptr;
};

}  // namespace gui::skin
