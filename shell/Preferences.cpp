#include "shell/Preferences.h"

#include "database/LogDatabase.h"
#include "shell/state/Global.h"

using namespace Qt::StringLiterals;

namespace vardelin {

namespace {

// A setting with a section of its own, named like the key without its blanks.
struct FontKey
{
    FontSetting Global::*font;
    QString section; // "DefaultEntryFont"; "Name" and "Size" follow
    QString key;     // "Default Entry Font"
    QString fallback;
};

const std::vector<FontKey> &fontKeys()
{
    const QString screen = u"MS Sans Serif"_s;
    const QString paper = u"Times New Roman"_s;
    static const std::vector<FontKey> keys{
        {&Global::DefaultFont, u"DefaultFont"_s, u"Default Font"_s, paper},
        {&Global::DefaultDisplayFont, u"DefaultDisplayFont"_s, u"Default Display Font"_s, screen},
        {&Global::DefaultEntryFont, u"DefaultEntryFont"_s, u"Default Entry Font"_s, screen},
        {&Global::DefaultToDoFont, u"DefaultToDoFont"_s, u"Default To Do Font"_s, screen},
        {&Global::DefaultLetterheadFont, u"DefaultLetterheadFont"_s, u"Default Letterhead Font"_s, paper},
        {&Global::DefaultReportFont, u"DefaultReportFont"_s, u"Default Report Font"_s, paper},
        {&Global::DefaultVardelinFont, u"DefaultVardelinFont"_s, u"Default Vardelin Font"_s, paper},
        {&Global::DefaultPrintFont, u"DefaultPrintFont"_s, u"Default Print Font"_s, paper}};
    return keys;
}

void loadDatabaseName(Global &global)
{
    const QString fallback = defaultDatabase(global.services.appPath);
    global.DatabaseFileName =
        global.services.settings.GetSetting(u"DefaultLogFile"_s, u"Default Log File"_s, fallback);
    if (global.DatabaseFileName.isEmpty()) // stored by an end of the program behind a successful Open
        global.DatabaseFileName = fallback;
}

void loadCaptions(Global &global)
{
    const Settings &settings = global.services.settings;
    const auto caption = [&](int frame, const QString &fallback) {
        return settings.GetSetting(u"Frame%1Caption"_s.arg(frame), u"Default Frame%1 Caption"_s.arg(frame),
                                   fallback);
    };
    global.ClientCaption = caption(1, u"Client"_s);
    global.EmployeeCaption = caption(2, u"Employee (or user)"_s);
    global.ProjectCaption = caption(3, u"Project"_s);
    global.SummaryCaption = caption(5, u"Invoice summary line"_s);
}

} // namespace

bool loadPreferences(Global &global)
{
    const Settings &settings = global.services.settings;
    for (const QString &path : recentFiles(settings))
        if (!path.isEmpty())
            global.List2 += path;
    loadDatabaseName(global);
    const QString hideTips = settings.GetSetting(u"Preferences"_s, u"Show Tips at Startup"_s, u"0"_s);
    for (const FontKey &font : fontKeys())
        (global.*font.font).name =
            settings.GetSetting(font.section + "Name"_L1, font.key + " Name"_L1, font.fallback);
    for (const FontKey &font : fontKeys())
        (global.*font.font).size =
            settings.GetSetting(font.section + "Size"_L1, font.key + " Size"_L1, u"12"_s);
    global.DefaultEmployee = settings.GetSetting(u"DefaultEmployee"_s, u"Default Employee"_s);
    loadCaptions(global);
    return val(hideTips) == 0;
}

} // namespace vardelin
