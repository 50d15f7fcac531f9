#include "windows/services/screen_reader.h"

#include <exception>
#include <map>
#include <new>

#include "windows/services/front_procedure.h"

namespace {

constexpr int kWindowItself = -1;

VARIANT Numbered(int number) {
    VARIANT value = {};
    value.vt = VT_I4;
    value.lVal = number;
    return value;
}

// The number by which a reader knows item `item`.
VARIANT ChildOf(int item) {
    return Numbered(item + 1);
}

// The system's interfaces have no virtual destructors; nothing deletes this class but itself.
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wnon-virtual-dtor"

// Answers for one window: for its items and its name by what we know, for all else by the object that the system has
// for it. Readers may hold it longer than the window lives.
class WindowObject final : public IAccessible {
public:
    WindowObject(HWND window, const ReadWindow& about, IAccessible* base)
        : window_(window), about_(about), base_(base) {}

    // IUnknown and IDispatch; scripts that call by name are not served.
    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** object) override {
        const bool isOurs = iid == IID_IUnknown || iid == IID_IDispatch || iid == __uuidof(IAccessible);
        *object = isOurs ? static_cast<IAccessible*>(this) : nullptr;
        if (isOurs) AddRef();
        return isOurs ? S_OK : E_NOINTERFACE;
    }
    ULONG STDMETHODCALLTYPE AddRef() override { return static_cast<ULONG>(InterlockedIncrement(&references_)); }
    ULONG STDMETHODCALLTYPE Release() override {
        const LONG left = InterlockedDecrement(&references_);
        if (left == 0) delete this;
        return static_cast<ULONG>(left);
    }
    HRESULT STDMETHODCALLTYPE GetTypeInfoCount(UINT* count) override { return *count = 0, S_OK; }
    HRESULT STDMETHODCALLTYPE GetTypeInfo(UINT, LCID, ITypeInfo**) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE GetIDsOfNames(REFIID, LPOLESTR*, UINT, LCID, DISPID*) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE Invoke(DISPID, REFIID, LCID, WORD, DISPPARAMS*, VARIANT*, EXCEPINFO*, UINT*) override {
        return E_NOTIMPL;
    }

    HRESULT STDMETHODCALLTYPE get_accName(VARIANT child, BSTR* name) override {
        *name = nullptr;
        return Answer(
            child, [=, this] { return Give(about_.name(window_), name) || base_->get_accName(child, name) == S_OK; },
            [=, this](int item) { return Give(Items().name(window_, item), name); },
            [=, this] { return base_->get_accName(child, name); });
    }
    HRESULT STDMETHODCALLTYPE get_accRole(VARIANT child, VARIANT* role) override {
        *role = {};
        return Answer(
            child,
            [=, this] {
                if (!about_.role) return base_->get_accRole(child, role) == S_OK;
                return *role = Numbered(about_.role), true;
            },
            [=, this](int) { return *role = Numbered(Items().role), true; },
            [=, this] { return base_->get_accRole(child, role); });
    }
    HRESULT STDMETHODCALLTYPE get_accState(VARIANT child, VARIANT* state) override {
        *state = {};
        return Answer(
            child, [=, this] { return base_->get_accState(child, state) == S_OK; },
            [=, this](int item) { return *state = Numbered(StateOf(item)), true; },
            [=, this] { return base_->get_accState(child, state); });
    }
    HRESULT STDMETHODCALLTYPE accLocation(long* left, long* top, long* width, long* height, VARIANT child) override {
        *left = *top = *width = *height = 0;
        return Answer(
            child, [=, this] { return base_->accLocation(left, top, width, height, child) == S_OK; },
            [=, this](int item) {
                RECT place = Items().place(window_, item);
                MapWindowPoints(window_, nullptr, reinterpret_cast<POINT*>(&place), 2);
                *left = place.left, *top = place.top;
                *width = place.right - place.left, *height = place.bottom - place.top;
                return true;
            },
            [=, this] { return base_->accLocation(left, top, width, height, child); });
    }
    HRESULT STDMETHODCALLTYPE get_accDefaultAction(VARIANT child, BSTR* action) override {
        *action = nullptr;
        return Answer(
            child, [=, this] { return base_->get_accDefaultAction(child, action) == S_OK; },
            [=, this](int) { return Items().action && Give(Items().action, action); },
            [=, this] { return base_->get_accDefaultAction(child, action); });
    }
    HRESULT STDMETHODCALLTYPE accDoDefaultAction(VARIANT child) override {
        return Answer(
            child, [=, this] { return base_->accDoDefaultAction(child) == S_OK; },
            [=, this](int item) {
                if (!Items().act || !IsWindowEnabled(window_)) return false;
                return Items().act(window_, item), true;
            },
            [=, this] { return base_->accDoDefaultAction(child); });
    }
    HRESULT STDMETHODCALLTYPE accSelect(long how, VARIANT child) override {
        return Answer(
            child, [=, this] { return base_->accSelect(how, child) == S_OK; },
            [=, this](int item) {
                constexpr long kPossible = SELFLAG_TAKEFOCUS | SELFLAG_TAKESELECTION;
                if ((how & ~kPossible) || !how || !IsWindowEnabled(window_)) return false;
                if (how & SELFLAG_TAKEFOCUS) SetFocus(window_);
                return Items().select(window_, item), true;
            },
            [=, this] { return base_->accSelect(how, child); });
    }
    HRESULT STDMETHODCALLTYPE accNavigate(long direction, VARIANT start, VARIANT* end) override {
        *end = {};
        return Answer(
            start,
            [=, this] {
                if (direction == NAVDIR_FIRSTCHILD) return GiveItem(0, end);
                if (direction == NAVDIR_LASTCHILD) return GiveItem(ItemCount() - 1, end);
                return base_->accNavigate(direction, start, end) == S_OK;
            },
            [=, this](int item) {
                if (direction == NAVDIR_NEXT) return GiveItem(item + 1, end);
                return direction == NAVDIR_PREVIOUS && GiveItem(item - 1, end);
            },
            [=, this] { return base_->accNavigate(direction, start, end); });
    }

    HRESULT STDMETHODCALLTYPE get_accChildCount(long* count) override {
        if (!HasItems()) return base_->get_accChildCount(count);
        *count = 0;
        return Guarded([=, this] {
            *count = ItemCount();
            for (HWND child = GetWindow(window_, GW_CHILD); child; child = GetWindow(child, GW_HWNDNEXT)) ++*count;
            return S_OK;
        });
    }
    // An item is no object of its own; the windows in this one follow behind the items.
    HRESULT STDMETHODCALLTYPE get_accChild(VARIANT child, IDispatch** object) override {
        if (!HasItems()) return base_->get_accChild(child, object);
        *object = nullptr;
        if (HWND inner = ChildWindow(child))
            return AccessibleObjectFromWindow(inner, static_cast<DWORD>(OBJID_WINDOW), IID_IDispatch,
                                              reinterpret_cast<void**>(object));
        return Answer(
            child, [] { return false; }, [](int) { return false; }, [] { return E_INVALIDARG; });
    }
    HRESULT STDMETHODCALLTYPE get_accFocus(VARIANT* child) override {
        if (!HasItems()) return base_->get_accFocus(child);
        *child = {};
        return Guarded([=, this] {
            if (GetFocus() != window_) return base_->get_accFocus(child);
            if (!GiveItem(Items().selected(window_), child)) *child = Numbered(CHILDID_SELF);
            return S_OK;
        });
    }
    HRESULT STDMETHODCALLTYPE get_accSelection(VARIANT* children) override {
        if (!HasItems()) return base_->get_accSelection(children);
        *children = {};
        return Guarded([=, this] { return GiveItem(Items().selected(window_), children) ? S_OK : S_FALSE; });
    }
    HRESULT STDMETHODCALLTYPE accHitTest(long x, long y, VARIANT* child) override {
        if (!HasItems()) return base_->accHitTest(x, y, child);
        *child = {};
        return Guarded([=, this] {
            const int item = ItemAt({x, y});
            return item == kWindowItself ? base_->accHitTest(x, y, child) : (*child = ChildOf(item), S_OK);
        });
    }

    // What the system knows.
    HRESULT STDMETHODCALLTYPE get_accParent(IDispatch** parent) override { return base_->get_accParent(parent); }
    HRESULT STDMETHODCALLTYPE get_accValue(VARIANT child, BSTR* value) override {
        *value = nullptr;
        return IsOurs(child) ? S_FALSE : base_->get_accValue(child, value);
    }
    HRESULT STDMETHODCALLTYPE get_accDescription(VARIANT child, BSTR* text) override {
        *text = nullptr;
        return IsOurs(child) ? S_FALSE : base_->get_accDescription(child, text);
    }
    HRESULT STDMETHODCALLTYPE get_accHelp(VARIANT child, BSTR* help) override {
        *help = nullptr;
        return IsOurs(child) ? S_FALSE : base_->get_accHelp(child, help);
    }
    HRESULT STDMETHODCALLTYPE get_accHelpTopic(BSTR* file, VARIANT child, long* topic) override {
        *file = nullptr;
        return IsOurs(child) ? S_FALSE : base_->get_accHelpTopic(file, child, topic);
    }
    HRESULT STDMETHODCALLTYPE get_accKeyboardShortcut(VARIANT child, BSTR* key) override {
        *key = nullptr;
        return IsOurs(child) ? S_FALSE : base_->get_accKeyboardShortcut(child, key);
    }
    HRESULT STDMETHODCALLTYPE put_accName(VARIANT, BSTR) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE put_accValue(VARIANT, BSTR) override { return E_NOTIMPL; }

private:
    ~WindowObject() { base_->Release(); }

    bool HasItems() const { return about_.items != nullptr; }
    const ReadItems& Items() const { return *about_.items; }
    int ItemCount() const { return IsWindow(window_) ? Items().count(window_) : 0; }
    // Whether it is one that the system knows nothing about.
    bool IsOurs(const VARIANT& child) const { return HasItems() && (child.vt != VT_I4 || child.lVal != CHILDID_SELF); }

    // The window may be gone, and memory run out: no exception may cross the system's code.
    template <typename Work>
    HRESULT Guarded(Work work) const {
        if (!IsWindow(window_)) return CO_E_OBJNOTCONNECTED;
        try {
            return work();
        } catch (const std::exception&) {
            return E_OUTOFMEMORY;
        }
    }

    // Answers a question about what `child` names: the window itself, an item, or what the system sees in a window
    // without items. The first two tell whether there is something to answer.
    template <typename OfWindow, typename OfItem, typename OfSystem>
    HRESULT Answer(const VARIANT& child, OfWindow ofWindow, OfItem ofItem, OfSystem ofSystem) const {
        return Guarded([&]() -> HRESULT {
            if (child.vt != VT_I4) return E_INVALIDARG;
            if (child.lVal == CHILDID_SELF) return ofWindow() ? S_OK : S_FALSE;
            if (!HasItems()) return ofSystem();
            if (child.lVal < 0 || child.lVal > ItemCount()) return E_INVALIDARG;
            return ofItem(static_cast<int>(child.lVal) - 1) ? S_OK : S_FALSE;
        });
    }

    static bool Give(const std::wstring& text, BSTR* out) {
        if (text.empty()) return false;
        *out = SysAllocStringLen(text.data(), static_cast<UINT>(text.size()));
        if (!*out) throw std::bad_alloc();
        return true;
    }

    bool GiveItem(int item, VARIANT* out) const {
        if (!HasItems() || item < 0 || item >= ItemCount()) return false;
        *out = ChildOf(item);
        return true;
    }

    HWND ChildWindow(const VARIANT& child) const {
        if (child.vt != VT_I4 || child.lVal <= ItemCount()) return nullptr;
        HWND inner = GetWindow(window_, GW_CHILD);
        for (long i = ItemCount() + 1; inner && i < child.lVal; ++i) inner = GetWindow(inner, GW_HWNDNEXT);
        return inner;
    }

    bool IsInSight(int item) const {
        RECT client = {}, seen = {};
        GetClientRect(window_, &client);
        const RECT place = Items().place(window_, item);
        return IntersectRect(&seen, &client, &place) != FALSE;
    }

    int StateOf(int item) const {
        const bool isSelected = Items().selected(window_) == item;
        int state = STATE_SYSTEM_SELECTABLE | STATE_SYSTEM_FOCUSABLE;
        if (isSelected) state |= STATE_SYSTEM_SELECTED;
        if (isSelected && GetFocus() == window_) state |= STATE_SYSTEM_FOCUSED;
        if (!IsInSight(item)) state |= STATE_SYSTEM_OFFSCREEN | STATE_SYSTEM_INVISIBLE;
        if (!IsWindowEnabled(window_)) state |= STATE_SYSTEM_UNAVAILABLE;
        return state;
    }

    int ItemAt(POINT onScreen) const {
        RECT client = {};
        ScreenToClient(window_, &onScreen);
        GetClientRect(window_, &client);
        if (!PtInRect(&client, onScreen)) return kWindowItself;
        for (int item = 0; item < ItemCount(); ++item) {
            const RECT place = Items().place(window_, item);
            if (PtInRect(&place, onScreen)) return item;
        }
        return kWindowItself;
    }

    HWND window_;
    const ReadWindow& about_;
    IAccessible* base_;
    LONG references_ = 1;
};

#pragma GCC diagnostic pop

std::map<HWND, const ReadWindow*> toldWindows;

// What readers hold is called from other processes on this thread, which needs an apartment for it.
void EnterApartment() {
    static const HRESULT entered = CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED);
    (void)entered;  // a thread that is in one already is in another kind at worst
}

LRESULT AnswerReader(HWND window, const ReadWindow& about, WPARAM wParam) {
    EnterApartment();
    IAccessible* base = nullptr;
    const HRESULT found = CreateStdAccessibleObject(window, static_cast<LONG>(OBJID_CLIENT), __uuidof(IAccessible),
                                                    reinterpret_cast<void**>(&base));
    if (FAILED(found)) return 0;
    auto* object = new (std::nothrow) WindowObject(window, about, base);
    if (!object) return base->Release(), 0;
    const LRESULT answer = LresultFromObject(__uuidof(IAccessible), wParam, object);
    object->Release();
    return answer;
}

LRESULT CALLBACK ReaderProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    const auto told = toldWindows.find(window);
    if (told != toldWindows.end()) {
        if (message == WM_GETOBJECT && static_cast<LONG>(lParam) == static_cast<LONG>(OBJID_CLIENT))
            if (const LRESULT answer = AnswerReader(window, *told->second, wParam)) return answer;
        if (message == WM_NCDESTROY) toldWindows.erase(told);
    }
    return CallBehind(ReaderProc, window, message, wParam, lParam);
}

std::wstring TextOf(HWND window) {
    std::wstring text(static_cast<size_t>(GetWindowTextLengthW(window)) + 1, L'\0');
    text.resize(static_cast<size_t>(GetWindowTextW(window, text.data(), static_cast<int>(text.size()))));
    return text;
}

bool IsOwnerDrawn(HWND control) {
    return (GetWindowLongW(control, GWL_STYLE) & BS_TYPEMASK) == BS_OWNERDRAW &&
           (SendMessageW(control, WM_GETDLGCODE, 0, 0) & DLGC_BUTTON) != 0;
}

}  // namespace

void TellReaders(HWND window, const ReadWindow& about) {
    if (!window) return;
    toldWindows[window] = &about;
    PutInFront(window, ReaderProc);
}

std::wstring LabelBefore(HWND control) {
    HWND label = GetWindow(control, GW_HWNDPREV);
    while (label && IsOwnerDrawn(label)) label = GetWindow(label, GW_HWNDPREV);
    std::wstring text = label ? TextOf(label) : std::wstring();
    std::erase(text, L'&');
    if (text.ends_with(L':')) text.pop_back();
    return text;
}

int ReadLineCount(HWND list) {
    return static_cast<int>(SendMessageW(list, LB_GETCOUNT, 0, 0));
}

std::wstring ReadLineText(HWND list, int line) {
    const auto index = static_cast<WPARAM>(line);
    const LRESULT units = SendMessageW(list, LB_GETTEXTLEN, index, 0);
    if (units < 0) return {};
    std::wstring text(static_cast<size_t>(units) + 1, L'\0');
    SendMessageW(list, LB_GETTEXT, index, reinterpret_cast<LPARAM>(text.data()));
    text.resize(static_cast<size_t>(units));
    return text;
}

RECT ReadLinePlace(HWND list, int line) {
    RECT place = {};
    SendMessageW(list, LB_GETITEMRECT, static_cast<WPARAM>(line), reinterpret_cast<LPARAM>(&place));
    return place;
}

int ReadSelectedLine(HWND list) {
    return static_cast<int>(SendMessageW(list, LB_GETCURSEL, 0, 0));
}

void SelectReadLine(HWND list, int line) {
    SendMessageW(list, LB_SETCURSEL, static_cast<WPARAM>(line), 0);
    SendMessageW(GetParent(list), WM_COMMAND, MAKEWPARAM(GetDlgCtrlID(list), LBN_SELCHANGE),
                 reinterpret_cast<LPARAM>(list));
}
