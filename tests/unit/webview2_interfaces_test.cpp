// The compiler's tables against the slot numbers of the published binary
// interface, which no compiler and no linker would miss if they were wrong.
#include <cstring>
#include <doctest/doctest.h>
#include <string>
#include <type_traits>

#include <objbase.h>

#include "webview2/interfaces.h"

namespace {

/// The slot of a virtual function: GCC and clang store 1 + its offset in the table in the first word of
/// a pointer to it.
template<typename Function>
std::size_t slot_of(Function function) {
    static_assert(std::is_member_function_pointer_v<Function>);
    std::size_t words[2] = {};
    static_assert(sizeof(function) == sizeof(words));
    std::memcpy(words, &function, sizeof(words));
    REQUIRE(words[0] % sizeof(void*) == 1);
    return (words[0] - 1) / sizeof(void*);
}

std::wstring text_of(const IID& iid) {
    wchar_t text[39] = {};
    StringFromGUID2(iid, text, 39);
    return text;
}

template<typename Interface>
constexpr bool
    is_bare_interface = std::is_abstract_v<Interface> && sizeof(Interface) == sizeof(void*) &&
                        !std::has_virtual_destructor_v<Interface> && std::is_base_of_v<IUnknown, Interface>;

} // namespace

TEST_CASE("the environment's methods sit in their slots") {
    CHECK(slot_of(&ICoreWebView2Environment::CreateCoreWebView2Controller) == 3);
    CHECK(slot_of(&ICoreWebView2Environment::remove_NewBrowserVersionAvailable) == 7);
}

TEST_CASE("the controller's methods sit in their slots") {
    CHECK(slot_of(&ICoreWebView2Controller::get_IsVisible) == 3);
    CHECK(slot_of(&ICoreWebView2Controller::put_Bounds) == 6);
    CHECK(slot_of(&ICoreWebView2Controller::SetBoundsAndZoomFactor) == 11);
    CHECK(slot_of(&ICoreWebView2Controller::Close) == 24);
    CHECK(slot_of(&ICoreWebView2Controller::get_CoreWebView2) == 25);
    CHECK(slot_of(&ICoreWebView2Controller2::get_DefaultBackgroundColor) == 26);
    CHECK(slot_of(&ICoreWebView2Controller2::put_DefaultBackgroundColor) == 27);
}

TEST_CASE("the view's methods sit in their slots") {
    CHECK(slot_of(&ICoreWebView2::get_Settings) == 3);
    CHECK(slot_of(&ICoreWebView2::NavigateToString) == 6);
    CHECK(slot_of(&ICoreWebView2::add_NavigationCompleted) == 15);
    CHECK(slot_of(&ICoreWebView2::ExecuteScript) == 29);
    CHECK(slot_of(&ICoreWebView2::PostWebMessageAsString) == 33);
    CHECK(slot_of(&ICoreWebView2::add_WebMessageReceived) == 34);
    CHECK(slot_of(&ICoreWebView2::OpenDevToolsWindow) == 51);
    CHECK(slot_of(&ICoreWebView2::remove_WindowCloseRequested) == 60);
}

TEST_CASE("the settings' methods sit in their slots") {
    CHECK(slot_of(&ICoreWebView2Settings::put_IsStatusBarEnabled) == 10);
    CHECK(slot_of(&ICoreWebView2Settings::put_AreDevToolsEnabled) == 12);
    CHECK(slot_of(&ICoreWebView2Settings::put_IsZoomControlEnabled) == 18);
    CHECK(slot_of(&ICoreWebView2Settings::put_IsBuiltInErrorPageEnabled) == 20);
}

TEST_CASE("the event arguments' methods sit in their slots") {
    CHECK(slot_of(&ICoreWebView2WebMessageReceivedEventArgs::get_Source) == 3);
    CHECK(slot_of(&ICoreWebView2WebMessageReceivedEventArgs::get_WebMessageAsJson) == 4);
    CHECK(slot_of(&ICoreWebView2WebMessageReceivedEventArgs::TryGetWebMessageAsString) == 5);
    CHECK(slot_of(&ICoreWebView2NavigationCompletedEventArgs::get_IsSuccess) == 3);
    CHECK(slot_of(&ICoreWebView2NavigationCompletedEventArgs::get_NavigationId) == 5);
}

TEST_CASE("every handler's Invoke follows right after IUnknown") {
    CHECK(slot_of(&ICoreWebView2CreateCoreWebView2EnvironmentCompletedHandler::Invoke) == 3);
    CHECK(slot_of(&ICoreWebView2CreateCoreWebView2ControllerCompletedHandler::Invoke) == 3);
    CHECK(slot_of(&ICoreWebView2WebMessageReceivedEventHandler::Invoke) == 3);
    CHECK(slot_of(&ICoreWebView2NavigationCompletedEventHandler::Invoke) == 3);
    CHECK(slot_of(&ICoreWebView2ExecuteScriptCompletedHandler::Invoke) == 3);
}

TEST_CASE("interfaces hold nothing but their table") {
    CHECK(is_bare_interface<ICoreWebView2Environment>);
    CHECK(is_bare_interface<ICoreWebView2Controller>);
    CHECK(is_bare_interface<ICoreWebView2Controller2>);
    CHECK(is_bare_interface<ICoreWebView2>);
    CHECK(is_bare_interface<ICoreWebView2Settings>);
    CHECK(is_bare_interface<ICoreWebView2WebMessageReceivedEventArgs>);
    CHECK(is_bare_interface<ICoreWebView2NavigationCompletedEventArgs>);
    CHECK(is_bare_interface<ICoreWebView2CreateCoreWebView2EnvironmentCompletedHandler>);
    CHECK(is_bare_interface<ICoreWebView2CreateCoreWebView2ControllerCompletedHandler>);
    CHECK(is_bare_interface<ICoreWebView2WebMessageReceivedEventHandler>);
    CHECK(is_bare_interface<ICoreWebView2NavigationCompletedEventHandler>);
    CHECK(is_bare_interface<ICoreWebView2ExecuteScriptCompletedHandler>);
    CHECK(std::is_base_of_v<ICoreWebView2Controller, ICoreWebView2Controller2>);
}

TEST_CASE("records passed by value have their published sizes and layout") {
    CHECK(sizeof(COREWEBVIEW2_COLOR) == 4);
    CHECK(alignof(COREWEBVIEW2_COLOR) == 1);
    const COREWEBVIEW2_COLOR color = {0xAA, 0x11, 0x22, 0x33};
    DWORD number = 0;
    std::memcpy(&number, &color, sizeof(number));
    CHECK(number == 0x332211AA);
    CHECK(color.A == 0xAA);
    CHECK(color.R == 0x11);
    CHECK(color.G == 0x22);
    CHECK(color.B == 0x33);
    CHECK(sizeof(EventRegistrationToken) == 8);
    CHECK(sizeof(RECT) == 16);
    CHECK(sizeof(BOOL) == 4);
    CHECK(sizeof(COREWEBVIEW2_WEB_ERROR_STATUS) == 4);
    CHECK(sizeof(COREWEBVIEW2_MOVE_FOCUS_REASON) == 4);
    CHECK(sizeof(COREWEBVIEW2_WEB_RESOURCE_CONTEXT) == 4);
    CHECK(sizeof(COREWEBVIEW2_CAPTURE_PREVIEW_IMAGE_FORMAT) == 4);
}

TEST_CASE("interface ids are the published ones") {
    struct Row {
        const IID& iid;
        const wchar_t* text;
    };
    const Row rows[] = {
        {IID_ICoreWebView2Environment, L"{B96D755E-0319-4E92-A296-23436F46A1FC}"},
        {IID_ICoreWebView2Controller, L"{4D00C0D1-9434-4EB6-8078-8697A560334F}"},
        {IID_ICoreWebView2Controller2, L"{C979903E-D4CA-4228-92EB-47EE3FA96EAB}"},
        {IID_ICoreWebView2, L"{76ECEACB-0462-4D94-AC83-423A6793775E}"},
        {IID_ICoreWebView2Settings, L"{E562E4F0-D7FA-43AC-8D71-C05150499F00}"},
        {IID_ICoreWebView2WebMessageReceivedEventArgs, L"{0F99A40C-E962-4207-9E92-E3D542EFF849}"},
        {IID_ICoreWebView2NavigationCompletedEventArgs, L"{30D68B7D-20D9-4752-A9CA-EC8448FBB5C1}"},
        {IID_ICoreWebView2CreateCoreWebView2EnvironmentCompletedHandler,
         L"{4E8A3389-C9D8-4BD2-B6B5-124FEE6CC14D}"},
        {IID_ICoreWebView2CreateCoreWebView2ControllerCompletedHandler,
         L"{6C4819F3-C9B7-4260-8127-C9F5BDE7F68C}"},
        {IID_ICoreWebView2WebMessageReceivedEventHandler, L"{57213F19-00E6-49FA-8E07-898EA01ECBD2}"},
        {IID_ICoreWebView2NavigationCompletedEventHandler, L"{D33A35BF-1C49-4F98-93AB-006E0533FE1C}"},
        {IID_ICoreWebView2ExecuteScriptCompletedHandler, L"{49511172-CC67-4BCA-9923-137112F4C4CC}"},
    };
    for (const Row& row : rows) {
        CHECK(text_of(row.iid) == row.text);
    }
}
