#include "objects.h"

#include <string>
#include <utility>

#include "handler.h"
#include "print.h"

ICoreWebView2Environment* g_environment = nullptr;
ICoreWebView2Controller* g_controller = nullptr;
ICoreWebView2* g_view = nullptr;
HWND g_parent = nullptr;

namespace {

using RuntimeEntry = HRESULT(STDAPICALLTYPE*)(bool, int, PCWSTR, IUnknown*,
                                              ICoreWebView2CreateCoreWebView2EnvironmentCompletedHandler*);
RuntimeEntry g_create_environment = nullptr;

template<typename Interface>
void release(Interface*& pointer) {
    if (pointer != nullptr) {
        std::exchange(pointer, nullptr)->Release();
    }
}

} // namespace

bool load_runtime(const char* path) {
    const HMODULE runtime = LoadLibraryExA(path, nullptr, LOAD_WITH_ALTERED_SEARCH_PATH);
    if (runtime == nullptr) {
        return false;
    }
    g_create_environment = reinterpret_cast<RuntimeEntry>(
        reinterpret_cast<void (*)()>(GetProcAddress(runtime, "CreateWebViewEnvironmentWithOptionsInternal")));
    // The runtime stays loaded, as with every loader.
    // cppcheck-suppress resourceLeak
    return g_create_environment != nullptr;
}

void create_environment(std::istream& /*words*/) {
    static bool g_is_inside_call = false;
    auto* const handler = new EnvironmentHandler(
        IID_ICoreWebView2CreateCoreWebView2EnvironmentCompletedHandler,
        [](HRESULT result, ICoreWebView2Environment* environment) {
            print("environment " + hex(result) + (environment == nullptr ? " null" : " given") +
                  (g_is_inside_call ? " inside" : " later"));
            if (environment != nullptr) {
                environment->AddRef();
                g_environment = environment;
            }
        });
    g_is_inside_call = true;
    const HRESULT result = g_create_environment(true, 0, L"C:\\data", nullptr, handler);
    g_is_inside_call = false;
    print("environment call " + hex(result));
    handler->Release();
}

void create_controller(std::istream& /*words*/) {
    auto* const handler = new ControllerHandler(IID_ICoreWebView2CreateCoreWebView2ControllerCompletedHandler,
                                                [](HRESULT result, ICoreWebView2Controller* controller) {
                                                    print("controller " + hex(result) +
                                                          (controller == nullptr ? " null" : " given"));
                                                    if (controller != nullptr) {
                                                        controller->AddRef();
                                                        g_controller = controller;
                                                        controller->get_CoreWebView2(&g_view);
                                                    }
                                                });
    const HRESULT result = g_environment->CreateCoreWebView2Controller(g_parent, handler);
    // The child window must be there already.
    HWND child = GetWindow(g_parent, GW_CHILD);
    print("controller call " + hex(result) + (child == nullptr ? " no child" : " child"));
    handler->Release();
}

void set_bounds(std::istream& words) {
    RECT bounds = {};
    words >> bounds.left >> bounds.top >> bounds.right >> bounds.bottom;
    const HRESULT result = g_controller->put_Bounds(bounds);
    RECT child = {};
    GetWindowRect(GetWindow(g_parent, GW_CHILD), &child);
    MapWindowPoints(nullptr, g_parent, reinterpret_cast<POINT*>(&child), 2);
    print("bounds " + hex(result) + " child " + std::to_string(child.left) + " " + std::to_string(child.top) +
          " " + std::to_string(child.right) + " " + std::to_string(child.bottom));
}

void set_background(std::istream& words) {
    unsigned a = 0;
    unsigned r = 0;
    unsigned g = 0;
    unsigned b = 0;
    words >> a >> r >> g >> b;
    void* asked = nullptr;
    HRESULT result = g_controller->QueryInterface(IID_ICoreWebView2Controller2, &asked);
    if (SUCCEEDED(result)) {
        auto* const controller = static_cast<ICoreWebView2Controller2*>(asked);
        result = controller->put_DefaultBackgroundColor(
            {static_cast<BYTE>(a), static_cast<BYTE>(r), static_cast<BYTE>(g), static_cast<BYTE>(b)});
        controller->Release();
    }
    print("background " + hex(result));
}

void change_settings(std::istream& /*words*/) {
    ICoreWebView2Settings* settings = nullptr;
    g_view->get_Settings(&settings);
    const HRESULT zoom = settings->put_IsZoomControlEnabled(FALSE);
    const HRESULT bar = settings->put_IsStatusBarEnabled(FALSE);
    const HRESULT tools = settings->put_AreDevToolsEnabled(TRUE);
    print("settings " + hex(zoom) + " " + hex(bar) + " " + hex(tools));
    settings->Release();
}

void check_identities(std::istream& /*words*/) {
    const auto ask = [](IUnknown* object, REFIID iid) {
        void* asked = object;
        const HRESULT result = object->QueryInterface(iid, &asked);
        if (SUCCEEDED(result)) {
            static_cast<IUnknown*>(asked)->Release();
        }
        return hex(result) + (asked == nullptr ? " null" : asked == object ? " same" : " other");
    };
    print("identity " + ask(g_controller, IID_ICoreWebView2Controller2) + ", " +
          ask(g_controller, IID_ICoreWebView2Controller) + ", " + ask(g_controller, IID_IUnknown) + ", " +
          ask(g_controller, IID_ICoreWebView2) + ", " + ask(g_view, IID_ICoreWebView2) + ", " +
          ask(g_environment, IID_ICoreWebView2Environment));
}

/// The colour that the page's window shows at a place.
void print_pixel(std::istream& words) {
    int x = 0;
    int y = 0;
    words >> x >> y;
    HWND child = GetWindow(g_parent, GW_CHILD);
    HDC context = GetDC(child);
    const COLORREF color = GetPixel(context, x, y);
    ReleaseDC(child, context);
    print("pixel " + std::to_string(GetRValue(color)) + " " + std::to_string(GetGValue(color)) + " " +
          std::to_string(GetBValue(color)));
}

void release_everything() {
    release(g_view);
    release(g_controller);
    release(g_environment);
}
