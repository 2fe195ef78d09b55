#pragma once

#include <type_traits>
#include <typeinfo>

#include "platform/qor/Api.h"
#include "platform/qor/Append.h"
#include "platform/qor/Containers.h"
#include "platform/qor/Immortal.h"

namespace gui {

/// One recorded step of drawing. Commands are never freed while the program runs: each class has a pool, and a released
/// command is overwritten at its next use.
/// Order: `doRedraw` of a whole list before the first `draw` of it; `release` last.
/// Threads: recording and `release` on one thread at a time, nothing is locked.
class VORLEX_API GraphicCommand {
public:
    /// Prepares what `draw` needs: geometry, targets.
    virtual void doRedraw() = 0;
    /// Sends the step to the renderer.
    virtual void draw() = 0;
    /// Gives the object back to its pool.
    virtual void release() = 0;

    // --- The same for each of a list, in its order ---
    static void doRedrawAll(qor::vector<GraphicCommand*> const& commands);
    static void drawAll(qor::vector<GraphicCommand*> const& commands);
    static void releaseAll(qor::vector<GraphicCommand*> const& commands);
    /// From the last to the first, so that the pools are as they were before the list was recorded. Recorded again, it
    /// gets the same objects in the same places, most of which then hold already what they are to hold.
    static void releaseAllBackwards(qor::vector<GraphicCommand*> const& commands);

    GraphicCommand(GraphicCommand const&) = delete;
    GraphicCommand& operator=(GraphicCommand const&) = delete;
    static void* operator new(std::size_t size) { return qor_malloc(size); }
    static void operator delete(void* memory) { qor_free(memory); }

protected:
    /// The pool of one class.
    template <typename T>
    struct CommandStorage {
        /// Objects ever made.
        int all = 0;
        /// The idle ones, used as a stack.
        qor::vector<T*> free;
    };

    GraphicCommand();
    virtual ~GraphicCommand();

    template <typename T>
    static CommandStorage<T>& getStorage() {
        return storage_<T>.value;
    }

    static void logStat_(char const* typeName, int all, int free);

private:
    /// There before the program begins, so that no use need ask, and never destroyed: lists that outlive static
    /// destruction may still release into it.
    template <typename T>
    static inline constinit qor::Immortal<CommandStorage<T>> storage_{};

    /// Every command ever made; keeps them reachable.
    static qor::vector<GraphicCommand*>& allCommands();

    unsigned serial;
};

/// Base of every concrete command: its pool, and empty steps for those that need none.
template <typename T>
class VORLEX_API SimpleGraphicCommand : public GraphicCommand {
public:
    /// An idle object as its last use left it, or a new one. The caller overwrites the fields that it carries.
    static T* fetch() {
        auto& free = getStorage<T>().free;
        if (free.empty()) [[unlikely]]
            return create_();
        T* const command = free.back();
        free.pop_back();
        return command;
    }

    /// The class has something to do in `doRedraw`.
    static constexpr bool preparesSomething() {
        return !std::is_same_v<decltype(&T::doRedraw), void (SimpleGraphicCommand::*)()>;
    }

    /// Logs how many objects of the class exist and how many are idle.
    static void stat() {
        CommandStorage<T> const& storage = getStorage<T>();
        logStat_(typeid(T).name(), storage.all, static_cast<int>(storage.free.size()));
    }

    void doRedraw() override {}
    void draw() override {}
    void release() override { qor::append(getStorage<T>().free, static_cast<T*>(this)); }

private:
    [[gnu::noinline, gnu::cold]] static T* create_() {
        T* const command = new T;
        ++getStorage<T>().all;
        return command;
    }
};

}  // namespace gui
