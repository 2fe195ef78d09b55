#pragma once

#include "platform/qor/Containers.h"
#include "platform/qor/Paths.h"
#include "platform/vtx/vtxFontFace.h"
#include "platform/vtx/vtxSystemFonts.h"

#include <memory>
#include <utility>

struct FT_LibraryRec_;

/// Finds and opens font faces by file name, by family name with style words ("Inter Bold Italic"), and for characters
/// that another face lacks. Shipped fonts, those in the folders `fonts` of the asset roots, come before the system's.
/// A file `order.txt` in such a folder names files, one a line, that come first; the others follow by name. The first
/// upright one of regular weight stands in where nothing else is found. For one thread at a time.
class vtxFontCatalog {
public:
    vtxFontCatalog();
    ~vtxFontCatalog();
    vtxFontCatalog(vtxFontCatalog const&) = delete;
    vtxFontCatalog& operator=(vtxFontCatalog const&) = delete;

    /// The face of that name, or, with the cause in `error`, the one that stands in for it; null if there is none at
    /// all. Faces live as long as the catalog.
    vtxFontFace* find(qor::string const& name, qor::string& error);
    /// Shipped faces in the order in which they are searched for missing characters.
    qor::vector<vtxFontFace*> const& getShipped();
    /// A face of the system that shows the code point, or null.
    vtxFontFace* findForCodePoint(char32_t codePoint, vtxFontStyle const& style);

    /// Opens the files anew that have changed. False if none has; a line about each that cannot be opened now is
    /// appended to `error`, and its face stays. Replaced faces live on, but are not found any more.
    bool reloadChanged(qor::string& error);
    qor::vector<qor::string> getFiles() const;

    /// Without the system's fonts text looks the same on every machine.
    void setSystemFontsUsed(bool used) { systemFontsUsed_ = used; }
    bool getSystemFontsUsed() const { return systemFontsUsed_; }

private:
    using Key = std::pair<qor::string, int>;

    vtxFontFace* open_(qor::string const& path, int index, qor::string& error);
    vtxFontFace* open_(vtxSystemFonts::Place const& place);
    void scanShipped_();
    void scanFolder_(qor::string const& folder);
    vtxFontFace* findFile_(qor::string const& name, qor::string& error);
    vtxFontFace* findFamily_(qor::string const& name);
    vtxFontFace* findShippedFamily_(std::string_view familyKey, vtxFontStyle const& style);
    vtxFontFace* findStandIn_(vtxFontStyle const& style);

    FT_LibraryRec_* library_ = nullptr;
    vtxSystemFonts system_;
    bool systemFontsUsed_ = true;
    struct Opened {
        std::unique_ptr<vtxFontFace> face;  ///< null for what could not be opened
        qor::FileStamp stamp;
    };
    qor::map<Key, Opened> faces_;
    qor::vector<std::unique_ptr<vtxFontFace>> replaced_;
    qor::vector<qor::string> roots_;
    bool scanned_ = false;
    qor::vector<vtxFontFace*> shipped_;
};
