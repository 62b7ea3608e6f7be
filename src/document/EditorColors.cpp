#include "document/EditorColors.h"

#include "document/SourceView.h"
#include "document/TokenInfo.h"
#include "document/frmEditor.h"
#include "platform/Failure.h"
#include "platform/OpenSave.h"
#include "core/Convert.h"
#include "core/Frame.h"
#include "core/Globals.h"
#include "core/ToolIds.h"

#include <vector>

namespace {

struct ClassKey {
    int cls;
    Key key;
};

// Table order is the order colours are applied in.
constexpr ClassKey kClassKeys[] = {
    {2, Key::svSymbol},      {3, Key::svNumber},   {5, Key::svSpecial},   {6, Key::svComment},
    {7, Key::svString},      {10, Key::svStatements}, {11, Key::svDefines}, {12, Key::svVarSize},
    {13, Key::svMath},       {14, Key::svLogic},   {15, Key::svModifer},
};

qint32 colorSetting(Key k) { return int32Of(setting(k)); }

}  // namespace

std::optional<Key> colorKeyOf(int tokenClass) {
    for (const ClassKey& ck : kClassKeys)
        if (ck.cls == tokenClass)
            return ck.key;
    return std::nullopt;
}

void applyViewSettings(SourceView& view) {
    skipOnFailure([&] { view.setFontName(setting(Key::FontName)); });
    skipOnFailure([&] { view.setSelBackColor(colorSetting(Key::ViewSelBackColor)); });
    skipOnFailure([&] { view.setSelForeColor(colorSetting(Key::ViewSelForeColor)); });
    TokenInfo& screen = view.tokenInfo();
    for (const ClassKey& ck : kClassKeys) {
        skipOnFailure([&] {
            const qint32 c = colorSetting(ck.key);
            screen.SetForegroundColor(ck.cls, c, true);
            if (ck.cls == 2)
                view.setForeColor(c);
        });
    }
    for (int cls = 10; cls <= 15; ++cls)
        skipOnFailure([&] { screen.SetFontStyle(cls, FontStyle::Bold, true); });
    // The background goes in as the stored text; a text that isn't a number fails each class alike.
    const QString back = setting(Key::svBackGround);
    for (int cls = 0; cls <= 15; ++cls)
        skipOnFailure([&] { screen.SetBackgroundColor(cls, back, true); });
    skipOnFailure([&] { view.setTextBackColor(int32Of(back)); });
    skipOnFailure([&] { view.setBackColor(int32Of(back)); });
    TokenInfo& print = view.printTokenInfo();
    for (const ClassKey& ck : kClassKeys)
        skipOnFailure([&] { print.SetForegroundColor(ck.cls, colorSetting(ck.key), true); });
    for (int cls = 10; cls <= 15; ++cls)
        skipOnFailure([&] { print.SetFontStyle(cls, FontStyle::Bold, true); });
}

void saveViewColors(SourceView& view) {
    const TokenInfo& screen = view.tokenInfo();
    for (int cls = 2; cls <= 15; ++cls) {
        skipOnFailure([&] {
            qint32 c = 0;
            bool set = false;
            screen.GetForegroundColor(cls, c, set);
            if (const auto key = colorKeyOf(cls); set && key)
                saveSetting(*key, QString::number(c));
        });
    }
    skipOnFailure([&] { saveSetting(Key::svBackGround, QString::number(view.BackColor())); });
    skipOnFailure([&] { saveSetting(Key::ViewSelBackColor, QString::number(view.SelBackColor())); });
    skipOnFailure([&] { saveSetting(Key::ViewSelForeColor, QString::number(view.SelForeColor())); });
}

void colorCommand(Frame& frame, const QString& toolId) {
    OpenSave& dlg = frame.openSave();
    dlg.CancelError = true;
    dlg.ShowColor();
    // From here on a failing step is passed over.
    const qint32 color = dlg.Color;
    // Every open document, in the order they were opened.
    std::vector<SourceView*> views;
    for (frmEditor* doc : frame.editors().all())
        views.push_back(doc->View);
    if (toolId == QLatin1String(ToolId::SelectionTextForegroundColor)) {
        for (SourceView* v : views)
            skipOnFailure([&] { v->setSelForeColor(color); });
    } else if (toolId == QLatin1String(ToolId::SelectionTextBackgroundColor)) {
        for (SourceView* v : views)
            skipOnFailure([&] { v->setSelBackColor(color); });
    } else if (toolId == QLatin1String(ToolId::BackgroundColor)) {
        for (SourceView* v : views) {
            skipOnFailure([&] { v->setBackColor(color); });
            skipOnFailure([&] { v->setTextBackColor(color); });
        }
        // No token keeps a background of its own.
        for (int cls = 0; cls < TokenInfo::kClasses; ++cls)
            for (SourceView* v : views)
                skipOnFailure([&] { v->tokenInfo().SetBackgroundColor(cls, color, true); });
        for (SourceView* v : views)
            skipOnFailure([&] { v->Refresh(); });
    } else if (toolId == QLatin1String(ToolId::TokenColor)) {
        // The class of the token last clicked in any document; one without a colour key sets nothing.
        Globals& g = globals();
        const int cls = g.ClickedTokenClass;
        if (colorKeyOf(cls)) {
            for (SourceView* v : views) {
                if (cls == 2)
                    skipOnFailure([&] { v->setForeColor(color); });
                skipOnFailure([&] { v->tokenInfo().SetForegroundColor(cls, color, true); });
                skipOnFailure([&] { v->printTokenInfo().SetForegroundColor(cls, color, true); });
            }
        }
        for (SourceView* v : views)
            skipOnFailure([&] { v->Refresh(); });
        // Once per click on a token: the Edit menu disables the tool until the next one.
        g.ClickedTokenClass = 0;
    }
}
