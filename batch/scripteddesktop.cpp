#include "batch/scripteddesktop.h"

#include "batch/cairopicture.h"

#include <chrono>
#include <ctime>
#include <filesystem>
#include <fstream>
#include <optional>

#include "core/hostmath.h"
#include "core/window.h"

namespace zelk {

namespace fs = std::filesystem;

ScriptedDesktop::ScriptedDesktop() {
    if (const char* p = std::getenv("ZELK_PROGRAMDIR")) programdir_ = p;
    if (const char* u = std::getenv("ZELK_USERDIR")) userdatadir_ = u;
}

void ScriptedDesktop::unanswered(const std::string& window) {
    std::string held = "the queue is empty";
    if (!queue.empty()) {
        held = "the queue holds an answer for " + queue.front().window + " (line " +
               std::to_string(queue.front().line) + ")";
    }
    throw BatchStop{2, "window " + window + " opened and " + held};
}

bool ScriptedDesktop::take(const std::string& window, QueuedAnswer& out, bool mayskip) {
    for (auto it = queue.begin(); it != queue.end(); ++it) {
        if (it->window == window) {
            out = *it;
            queue.erase(it);
            return true;
        }
        if (!it->optional) break;
    }
    if (mayskip) return false;
    unanswered(window);
}

bool ScriptedDesktop::picture(Window& w, const std::string& format, std::string& bytes, std::string& why) {
    const RecordingSurface& rec = surfacefor(w);
    if (format == "svg") {
        bytes = rec.svg();
        return true;
    }
    return cairopicture(rec, format, bytes, why);
}

RecordingSurface& ScriptedDesktop::surfacefor(Window& w) {
    auto& s = surfaces_[&w];
    if (!s) s = std::make_unique<RecordingSurface>(&w.clientwidth, &w.clientheight, w.unit);
    w.surface = s.get();
    return *s;
}

void ScriptedDesktop::show(Window& w) {
    if (w.draws && !w.surface) surfacefor(w);
    w.activate();
}

void ScriptedDesktop::apply(Window& w, const std::string& action) {
    if (action == "close") {
        w.closebox();
        return;
    }
    size_t eq = action.find('=');
    size_t quote = action.find('"');
    if (eq != std::string::npos && (quote == std::string::npos || eq < quote)) {
        std::string name;
        int index;
        if (!splitname(action.substr(0, eq), name, index))
            throw BatchStop{1, "malformed action " + action + " for window " + w.formname};
        // On a list box the text picks the row that reads so, as a click on it would.
        if (Control* c = w.find(name, index); c && c->kind == ControlKind::List) {
            std::string text = unquote(action.substr(eq + 1));
            int row = w.finditem(name, index, text);
            if (row < 0)
                throw BatchStop{1, "list " + action.substr(0, eq) + " of window " + w.formname +
                                       " has no item \"" + text + "\""};
            w.selectitem(name, index, row);
            return;
        }
        if (!w.settext(name, index, unquote(action.substr(eq + 1))))
            throw BatchStop{1, "window " + w.formname + " has no text control " + action.substr(0, eq)};
        return;
    }
    if (!action.empty() && action.front() == '"') {
        std::string cap = unquote(action);
        Control* c = w.findcaption(cap);
        if (!c) throw BatchStop{1, "window " + w.formname + " has no control captioned \"" + cap + "\""};
        w.click(c->name, c->index);
        return;
    }
    std::string name;
    int index;
    if (!splitname(action, name, index) || !w.click(name, index))
        throw BatchStop{1, "window " + w.formname + " has no control " + action};
}

void ScriptedDesktop::showmodal(Window& w) {
    if (w.draws && !w.surface) surfacefor(w);
    w.activate();
    while (w.visible) {
        QueuedAnswer a;
        take(w.formname, a, false);
        std::vector<std::string> actions = a.actions;
        // The data panel takes a bare list of texts: the visible rows in order, then ENTER.
        bool bare = false;
        if (w.formname == "Getdata" && !actions.empty()) {
            const std::string& first = actions.front();
            std::string name;
            int index;
            bool ref = first == "close" || (!first.empty() && first.front() == '"' && w.findcaption(unquote(first))) ||
                       (first.find('=') != std::string::npos && first.front() != '"') ||
                       (splitname(first, name, index) && w.find(name, index));
            bare = !ref;
        }
        if (bare) {
            size_t k = 0;
            for (int i = 0; i < 9 && k < actions.size(); ++i) {
                Control* row = w.find("getvalue", i);
                if (!row || !row->visible) continue;
                w.settext("getvalue", i, unquote(actions[k++]));
            }
            if (k < actions.size())
                throw BatchStop{1, "more texts than visible rows for Getdata (line " + std::to_string(a.line) + ")"};
            w.click("accept");
            continue;
        }
        for (size_t k = 0; k < actions.size(); ++k) {
            if (!w.visible)
                throw BatchStop{2, "window " + w.formname + " closed with actions left: " + actions[k]};
            try {
                apply(w, actions[k]);
            } catch (BatchStop& stop) {
                // The answer was queued on a line of its own: name it too.
                stop.message += " (answer on line " + std::to_string(a.line) + ")";
                throw;
            }
        }
    }
}

int ScriptedDesktop::msgbox(const std::string& text, int buttonsandicon, const std::string& title) {
    int buttons = buttonsandicon & 7;
    MessageRecord rec{title, buttons, "", text};
    QueuedAnswer a;
    int answer = vbOK;
    if (take("msgbox", a, buttons == vbOKOnly)) {
        if (a.actions.size() != 1) throw BatchStop{1, "a msgbox answer is one word (line " + std::to_string(a.line) + ")"};
        static const std::pair<const char*, int> names[] = {{"OK", vbOK},       {"Cancel", vbCancel},
                                                            {"Abort", vbAbort}, {"Retry", vbRetry},
                                                            {"Ignore", vbIgnore}, {"Yes", vbYes},
                                                            {"No", vbNo}};
        answer = 0;
        for (auto& [n, v] : names)
            if (a.actions[0] == n) answer = v;
        static const std::vector<int> allowed[] = {{vbOK}, {vbOK, vbCancel}, {vbAbort, vbRetry, vbIgnore},
                                                   {vbYes, vbNo, vbCancel}, {vbYes, vbNo}, {vbRetry, vbCancel}};
        bool fits = false;
        if (buttons < 6)
            for (int v : allowed[buttons]) fits = fits || v == answer;
        if (!fits) {
            messages.push_back(rec);
            throw BatchStop{2, "answer " + a.actions[0] + " does not fit the message box \"" + title + "\""};
        }
    }
    static const char* answernames[] = {"", "OK", "Cancel", "Abort", "Retry", "Ignore", "Yes", "No"};
    rec.answer = answernames[answer];
    messages.push_back(rec);
    return answer;
}

bool ScriptedDesktop::filedialog(FileDialogRequest& request) {
    QueuedAnswer a;
    take("filedialog", a, false);
    if (a.actions.size() != 1) throw BatchStop{1, "a filedialog answer is one path or cancel"};
    // An empty name is what a dialog closed without a name gives: a cancel.
    std::optional<std::string> path = readpath(a.actions[0]);
    if (!path || *path == "cancel") return false;
    std::error_code ec;
    fs::path full = fs::absolute(*path, ec);
    request.filename = ec ? *path : full.string();
    return true;
}

std::string ScriptedDesktop::getsetting(const std::string& app, const std::string& section,
                                        const std::string& key, const std::string& def) {
    auto it = settings.find(app + "/" + section + "/" + key);
    return it == settings.end() ? def : it->second;
}

void ScriptedDesktop::savesetting(const std::string& app, const std::string& section,
                                  const std::string& key, const std::string& value) {
    settings[app + "/" + section + "/" + key] = value;
    savesettingsfile();
}

void ScriptedDesktop::loadsettings(const std::string& file) {
    settingsfile = file;
    std::ifstream in(file);
    std::string line;
    while (std::getline(in, line)) {
        if (!line.empty() && line.back() == '\r') line.pop_back();
        size_t eq = line.find('=');
        if (eq == std::string::npos || line.empty() || line[0] == '#') continue;
        settings[line.substr(0, eq)] = line.substr(eq + 1);
    }
}

void ScriptedDesktop::savesettingsfile() {
    if (settingsfile.empty()) return;
    std::ofstream out(settingsfile, std::ios::trunc);
    for (auto& [k, v] : settings) out << k << '=' << v << '\n';
}

double ScriptedDesktop::rnd() {
    return std::uniform_real_distribution<double>(0.0, 1.0)(random_);
}

void ScriptedDesktop::randomize() {
    random_.seed(seeded ? seed : static_cast<unsigned long long>(std::time(nullptr)));
}

std::string ScriptedDesktop::date() {
    std::time_t t = std::time(nullptr);
    std::tm tm{};
    localtime_r(&t, &tm);
    return std::to_string(tm.tm_mon + 1) + "/" + std::to_string(tm.tm_mday) + "/" +
           std::to_string(tm.tm_year + 1900);
}

bool ScriptedDesktop::openurl(const std::string& url) {
    opened.push_back(url);
    return true;
}

bool ScriptedDesktop::startprogram(const std::string& path) {
    opened.push_back(path);
    return fs::exists(path);
}

} // namespace zelk
