#include "ui/page_text.h"

#include "ui/page_pieces.h"

std::wstring page_text() {
    std::wstring page;
    // Once for all pieces, so that no append moves the text.
    page.reserve(page_capacity);
    for (const std::wstring_view piece : page_pieces) {
        page += piece;
    }
    return page;
}
