#include "picker_embedded_host.h"

#include <QCoreApplication>
#include <QFileInfo>
#include <QMainWindow>
#include <QTimer>

#include <cstdio>

namespace {

const QString internalFailure = QStringLiteral("(kFailure): Unexpected Internal Failure");
// Raised, once the host is idle, after the node table changed.
const QString nodes_changed_event = QStringLiteral("NodesChanged");
// Backquotes inside backquotes are not MEL; the limit only keeps hostile text from recursing.
constexpr int maxNesting = 8;

const QStringList& known_events() {
    static const QStringList events{
        QStringLiteral("SelectionChanged"), QStringLiteral("quitApplication"),
        QStringLiteral("deleteAll"),        QStringLiteral("NewSceneOpened"),
        QStringLiteral("SceneOpened"),      QStringLiteral("SceneSaved"),
    };
    return events;
}

QString parent_namespace(const QString& ns) {
    const int colon = ns.lastIndexOf(QLatin1Char(':'));
    return colon < 0 ? QString() : ns.left(colon);
}

void append_namespace_tree(const QString& parent, const QStringList& all, QStringList& ordered) {
    for (const QString& ns : all) {
        if (parent_namespace(ns) == parent) {
            ordered.append(ns);
            append_namespace_tree(ns, all, ordered);
        }
    }
}

// The selection by name; the host's scene holds nothing finer.
class embedded_selection : public picker_selection_snapshot {
public:
    embedded_selection(picker_embedded_host& host, const QStringList& names)
        : host_(&host), names_(names) {}
    host_status restore() override {
        if (!host_ || !host_->setSelection(names_))
            return host_status::failure(internalFailure);
        return host_status();
    }

private:
    QPointer<picker_embedded_host> host_;
    QStringList names_;
};

QStringList flatten(const QVector<picker_mel_value>& values) {
    QStringList flat;
    for (const picker_mel_value& value : values)
        flat.append(value.items);
    return flat;
}

} // namespace

picker_embedded_host::picker_embedded_host(QObject* parent) : QObject(parent) {}

picker_embedded_host::~picker_embedded_host() = default;

bool picker_embedded_host::failing(operation which, const QString& event) const {
    const auto found = failing_.constFind(which);
    return found != failing_.constEnd() && (found->isEmpty() || *found == event);
}

host_status picker_embedded_host::refuse() const {
    return host_status::failure(internalFailure);
}

void picker_embedded_host::setFailing(operation which, bool fail, const QString& event) {
    if (fail)
        failing_.insert(which, event);
    else
        failing_.remove(which);
}

host_status picker_embedded_host::openPlugin(const QString& vendor, const QString& version,
                                             const QString& requiredApiVersion) {
    Q_UNUSED(vendor)
    Q_UNUSED(requiredApiVersion)
    if (failing(operation::openPlugin))
        return refuse();
    pluginVersion_ = version;
    return host_status();
}

host_status picker_embedded_host::registerCommand(const QString& name, picker_command_fn command) {
    if (failing(operation::registerCommand))
        return refuse();
    if (name.isEmpty() || !command || commands_.count(name) != 0)
        return host_status::failure(
            QStringLiteral("(kInvalidParameter): Unexpected Internal Failure"));
    commands_[name] = command;
    return host_status();
}

host_status picker_embedded_host::deregisterCommand(const QString& name) {
    if (failing(operation::deregisterCommand))
        return refuse();
    if (commands_.erase(name) == 0)
        return host_status::failure(QStringLiteral("(kNotFound): Object does not exist"));
    return host_status();
}

QString picker_embedded_host::loadPath() const {
    return loadPath_.isEmpty() ? QCoreApplication::applicationDirPath() : loadPath_;
}

picker_callback_id picker_embedded_host::addEventCallback(const QString& event,
                                                          picker_event_fn function,
                                                          void* clientData, host_status* status) {
    host_status outcome;
    if (failing(operation::addEventCallback, event))
        outcome = refuse();
    else if (!function || !known_events().contains(event))
        outcome = host_status::failure(QStringLiteral("(kInvalidParameter): Unknown event"));
    return keep_callback(outcome, event, function, clientData, status);
}

picker_callback_id picker_embedded_host::addNodesChangedCallback(picker_event_fn function,
                                                                 void* clientData,
                                                                 host_status* status) {
    host_status outcome;
    if (failing(operation::addEventCallback, nodes_changed_event))
        outcome = refuse();
    else if (!function)
        outcome = host_status::failure(QStringLiteral("(kInvalidParameter): No function"));
    return keep_callback(outcome, nodes_changed_event, function, clientData, status);
}

picker_callback_id picker_embedded_host::keep_callback(const host_status& outcome,
                                                       const QString& event,
                                                       picker_event_fn function, void* clientData,
                                                       host_status* status) {
    if (status)
        *status = outcome;
    if (!outcome)
        return 0;
    const picker_callback_id id = nextCallbackId_++;
    callbacks_[id] = callback_entry{event, function, clientData};
    return id;
}

host_status picker_embedded_host::removeCallback(picker_callback_id id) {
    const auto found = callbacks_.find(id);
    const QString event = found == callbacks_.end() ? QString() : found->second.event;
    if (failing(operation::removeCallback, event))
        return refuse();
    if (found == callbacks_.end())
        return host_status::failure(QStringLiteral("(kInvalidParameter): No such callback"));
    callbacks_.erase(found);
    return host_status();
}

int picker_embedded_host::callbackCount(const QString& event) const {
    int count = 0;
    for (const auto& entry : callbacks_)
        count += entry.second.event == event ? 1 : 0;
    return count;
}

void picker_embedded_host::raiseEvent(const QString& event) {
    QVector<picker_callback_id> ids;
    for (const auto& entry : callbacks_)
        if (entry.second.event == event)
            ids.append(entry.first);
    // A callback may remove callbacks; each is looked up again before it runs.
    for (const picker_callback_id id : ids) {
        const auto found = callbacks_.find(id);
        if (found != callbacks_.end())
            found->second.function(found->second.clientData);
    }
}

host_status picker_embedded_host::executeCommandOnIdle(const QString& mel, bool displayEnabled) {
    Q_UNUSED(displayEnabled)
    if (failing(operation::executeCommandOnIdle))
        return refuse();
    idleQueue_.push_back(idle_entry{false, mel});
    scheduleIdle();
    return host_status();
}

host_status picker_embedded_host::executePythonCommandOnIdle(const QString& python,
                                                             bool displayEnabled) {
    Q_UNUSED(displayEnabled)
    if (failing(operation::executeCommandOnIdle))
        return refuse();
    idleQueue_.push_back(idle_entry{true, python});
    scheduleIdle();
    return host_status();
}

QStringList picker_embedded_host::pendingMel() const {
    QStringList texts;
    for (const idle_entry& entry : idleQueue_)
        if (!entry.python)
            texts.append(entry.text);
    return texts;
}

void picker_embedded_host::scheduleIdle() {
    if (idleScheduled_)
        return;
    idleScheduled_ = true;
    QTimer::singleShot(0, this, [this] {
        idleScheduled_ = false;
        processIdle();
    });
}

void picker_embedded_host::processIdle() {
    // A modal dialog opened by a queued command spins the event loop; the outer run goes on
    // with the queue once it returns.
    if (runningIdle_)
        return;
    runningIdle_ = true;
    while (!idleQueue_.empty() || nodesPending_) {
        if (idleQueue_.empty()) {
            nodesPending_ = false;
            raiseEvent(nodes_changed_event);
            continue;
        }
        const idle_entry entry = idleQueue_.front();
        idleQueue_.pop_front();
        if (entry.python)
            log(output_kind::line, QStringLiteral("python: ") + entry.text);
        else
            runMel(entry.text, nullptr, 0);
    }
    runningIdle_ = false;
}

host_status picker_embedded_host::activeSelection(QStringList& names) {
    if (failing(operation::activeSelection))
        return refuse();
    names = selection_;
    return host_status();
}

std::unique_ptr<picker_selection_snapshot>
picker_embedded_host::saveSelection(host_status* status) {
    QStringList names;
    const host_status read = activeSelection(names);
    if (status)
        *status = read;
    if (!read)
        return nullptr;
    return std::make_unique<embedded_selection>(*this, names);
}

host_status picker_embedded_host::selectByName(const QString& name,
                                               picker_list_adjustment adjustment) {
    if (failing(operation::selectByName))
        return refuse();
    if (!nodeSet_.contains(name))
        return host_status::failure(QStringLiteral("(kInvalidParameter): No object matches name"));
    QStringList names;
    if (adjustment == picker_list_adjustment::add)
        names = selection_;
    if (!names.contains(name))
        names.append(name);
    changeSelection(names);
    return host_status();
}

host_status picker_embedded_host::nodesExist(const QStringList& names, QVector<bool>& exist) {
    exist.resize(names.size());
    for (int i = 0; i < names.size(); ++i)
        exist[i] = nodeSet_.contains(names.at(i));
    return host_status();
}

void picker_embedded_host::nodesChanged() {
    nodesPending_ = true;
    scheduleIdle();
}

host_status picker_embedded_host::clearSelectionList() {
    if (failing(operation::clearSelectionList))
        return refuse();
    changeSelection(QStringList());
    return host_status();
}

bool picker_embedded_host::setSelection(const QStringList& names) {
    QStringList unique;
    for (const QString& name : names) {
        if (!nodeSet_.contains(name))
            return false;
        if (!unique.contains(name))
            unique.append(name);
    }
    changeSelection(unique);
    return true;
}

void picker_embedded_host::changeSelection(const QStringList& names) {
    selection_ = names;
    raiseEvent(QStringLiteral("SelectionChanged"));
}

void picker_embedded_host::changeSelectionUndoably(const QStringList& names) {
    auto before = std::make_unique<embedded_selection>(*this, selection_);
    changeSelection(names);
    pushUndo(std::make_unique<picker_selection_change>(
        std::move(before), std::make_unique<embedded_selection>(*this, selection_)));
}

void picker_embedded_host::displayError(const QString& text) {
    logError(text);
}

void picker_embedded_host::log(output_kind kind, const QString& text) {
    scriptLog_.append(text);
    if (output_)
        output_(kind, text);
    else if (kind == output_kind::warning || kind == output_kind::error)
        std::fprintf(stderr, "%s\n", text.toLocal8Bit().constData());
}

void picker_embedded_host::logWarning(const QString& text) {
    log(output_kind::warning, QStringLiteral("// Warning: ") + position_ + text);
}

void picker_embedded_host::logError(const QString& text) {
    log(output_kind::error, QStringLiteral("// Error: ") + position_ + text);
}

QWidget* picker_embedded_host::mainWindow() {
    if (batch_)
        return nullptr;
    if (!mainWindow_) {
        ownMainWindow_ = std::make_unique<QMainWindow>();
        ownMainWindow_->setWindowTitle(QStringLiteral("Talvora Picker Host"));
        mainWindow_ = ownMainWindow_.get();
    }
    return mainWindow_;
}

bool picker_embedded_host::addNode(const QString& name) {
    if (name.isEmpty() || nodeSet_.contains(name) || name.startsWith(QLatin1Char(':')) ||
        name.endsWith(QLatin1Char(':')) || name.contains(QLatin1String("::")))
        return false;
    nodes_.append(name);
    nodeSet_.insert(name);
    nodesChanged();
    return true;
}

bool picker_embedded_host::removeNode(const QString& name) {
    if (!nodeSet_.remove(name))
        return false;
    nodes_.removeOne(name);
    nodesChanged();
    if (selection_.contains(name)) {
        QStringList kept = selection_;
        kept.removeAll(name);
        changeSelection(kept);
    }
    return true;
}

bool picker_embedded_host::renameNode(const QString& name, const QString& newName) {
    if (!nodeSet_.contains(name) || !addNode(newName))
        return false;
    // In the old name's place, so that listing the scene keeps its order.
    nodes_.removeLast();
    nodes_[nodes_.indexOf(name)] = newName;
    nodeSet_.remove(name);
    const int selected = selection_.indexOf(name);
    if (selected >= 0) {
        QStringList renamed = selection_;
        renamed[selected] = newName;
        changeSelection(renamed);
    }
    return true;
}

QStringList picker_embedded_host::namespaces() const {
    QStringList all;
    QSet<QString> seen;
    for (const QString& node : nodes_) {
        const QStringList parts = node.split(QLatin1Char(':'));
        QString ns;
        for (int i = 0; i + 1 < parts.size(); ++i) {
            ns = i == 0 ? parts.at(0) : ns + QLatin1Char(':') + parts.at(i);
            if (!seen.contains(ns)) {
                seen.insert(ns);
                all.append(ns);
            }
        }
    }
    QStringList ordered;
    append_namespace_tree(QString(), all, ordered);
    return ordered;
}

void picker_embedded_host::resetScene(const QStringList& nodes,
                                      const QMap<QString, QString>& fileInfo) {
    nodes_.clear();
    nodeSet_.clear();
    nodesChanged();
    for (const QString& node : nodes)
        addNode(node);
    fileInfo_ = fileInfo;
    modified_ = false;
    scenePath_.clear();
    renamed_ = false;
    referenceBase_.clear();
    scene_ = picker_ma_scene();
    // As in Maya, a new scene starts a new undo queue: nothing undoes into the old one.
    undoQueue_.clear();
    undoDone_ = 0;
    if (!selection_.isEmpty())
        changeSelection(QStringList());
}

void picker_embedded_host::newScene() {
    raiseEvent(QStringLiteral("deleteAll"));
    resetScene(QStringList(), QMap<QString, QString>());
    raiseEvent(QStringLiteral("NewSceneOpened"));
}

void picker_embedded_host::openScene(const QStringList& nodes,
                                     const QMap<QString, QString>& fileInfo) {
    resetScene(nodes, fileInfo);
    raiseEvent(QStringLiteral("SceneOpened"));
}

void picker_embedded_host::quit() {
    raiseEvent(QStringLiteral("quitApplication"));
}

host_status picker_embedded_host::executeCommand(const QString& mel, picker_mel_value* result) {
    return runMel(mel, result, 0);
}

host_status
picker_embedded_host::runScript(const QString& mel, const QString& source,
                                const std::function<void(const picker_mel_value&)>& result) {
    const auto at = [&source](int line) {
        return source.isEmpty() ? QString() : QStringLiteral("%1:%2: ").arg(source).arg(line);
    };
    const picker_mel_script script = picker_mel_parse(mel);
    if (!script.error.isEmpty()) {
        position_ = at(script.errorLine);
        const host_status status = melError(script.error);
        position_.clear();
        return status;
    }
    for (const picker_mel_statement& statement : script.statements) {
        picker_mel_value value = picker_mel_value::string(QString());
        position_ = at(statement.line);
        const host_status status = runStatement(statement, &value, 0);
        position_.clear();
        if (!status)
            return status;
        if (result)
            result(value);
    }
    return host_status();
}

host_status picker_embedded_host::melError(const QString& text) {
    logError(text);
    return host_status::failure(text);
}

host_status picker_embedded_host::runMel(const QString& text, picker_mel_value* result, int depth) {
    if (depth > maxNesting)
        return melError(QStringLiteral("Commands are nested too deeply."));
    const picker_mel_script script = picker_mel_parse(text);
    if (!script.error.isEmpty())
        return melError(script.error);
    picker_mel_value last = picker_mel_value::string(QString());
    for (const picker_mel_statement& statement : script.statements) {
        last = picker_mel_value::string(QString());
        const host_status status = runStatement(statement, &last, depth);
        if (!status)
            return status;
    }
    if (result)
        *result = last;
    return host_status();
}

host_status picker_embedded_host::evaluateArguments(const picker_mel_statement& statement,
                                                    QVector<picker_mel_value>& values, int depth) {
    for (const picker_mel_word& word : statement.arguments) {
        if (word.type != picker_mel_word::kind::backquoted) {
            values.append(picker_mel_value::string(word.text));
            continue;
        }
        picker_mel_value value;
        const host_status status = runMel(word.text, &value, depth + 1);
        if (!status)
            return status;
        values.append(value);
    }
    return host_status();
}

host_status picker_embedded_host::runStatement(const picker_mel_statement& statement,
                                               picker_mel_value* result, int depth) {
    if (!statement.definedProcedure.isEmpty()) {
        procedures_.insert(statement.definedProcedure);
        return host_status();
    }
    QVector<picker_mel_value> values;
    const host_status evaluated = evaluateArguments(statement, values, depth);
    if (!evaluated)
        return evaluated;
    const QString& name = statement.command;
    const auto registered = commands_.find(name);
    if (registered != commands_.end())
        return runRegistered(registered->second, values);
    const QStringList args = flatten(values);
    if (name == QLatin1String("fileInfo"))
        return runFileInfo(args, result);
    if (name == QLatin1String("file"))
        return runFile(args, result);
    if (name == QLatin1String("ls"))
        return runLs(args, result);
    if (name == QLatin1String("select"))
        return runSelect(args);
    if (name == QLatin1String("xform"))
        return runXform(args);
    if (name == QLatin1String("delete"))
        return runDelete(args);
    if (name == QLatin1String("rename"))
        return runRename(args, result);
    if (name == QLatin1String("undo") || name == QLatin1String("redo")) {
        if (!args.isEmpty())
            return melError(QStringLiteral("%1: takes no arguments.").arg(name));
        return walkUndo(name == QLatin1String("undo"));
    }
    if (name == QLatin1String("print")) {
        if (values.size() != 1)
            return melError(QStringLiteral("print: wrong number of arguments."));
        // As Maya prints: a string as it is, an array an element a line.
        const picker_mel_value& value = values.first();
        log(output_kind::print,
            value.isArray ? value.items.join(QLatin1Char('\n')) + QLatin1Char('\n') : args.first());
        return host_status();
    }
    if (name == QLatin1String("picker_ListNamespaces") && procedures_.contains(name)) {
        if (!args.isEmpty())
            return melError(QStringLiteral("Wrong number of arguments on call to %1.").arg(name));
        *result = picker_mel_value::array(namespaces());
        return host_status();
    }
    if (procedures_.contains(name))
        return melError(QStringLiteral("Procedure \"%1\" cannot run in this host.").arg(name));
    return melError(QStringLiteral("Cannot find procedure \"%1\".").arg(name));
}

host_status picker_embedded_host::runRegistered(picker_command_fn command,
                                                const QVector<picker_mel_value>& values) {
    // An array passed alone after the first argument stays one slot, as the host hands a MEL
    // array to a command; elsewhere its items become arguments of their own.
    QVector<picker_mel_value> argSlots;
    const bool arrayAlone = values.size() == 2 && values.at(1).isArray;
    for (int i = 0; i < values.size(); ++i) {
        if (values.at(i).isArray && !(arrayAlone && i == 1)) {
            for (const QString& item : values.at(i).items)
                argSlots.append(picker_mel_value::string(item));
        } else {
            argSlots.append(values.at(i));
        }
    }
    // A failed command stops the text; what went wrong is the command's own to report. Like
    // Maya, the undo queue keeps only calls that succeeded.
    picker_undo_ptr undo;
    const host_status status = command(picker_mel_arg_list(argSlots), undo);
    if (status && undo)
        pushUndo(std::move(undo));
    return status;
}

void picker_embedded_host::pushUndo(picker_undo_ptr step) {
    undoQueue_.resize(undoDone_);
    undoQueue_.push_back(std::move(step));
    undoDone_ = undoQueue_.size();
}

host_status picker_embedded_host::walkUndo(bool back) {
    if (back ? undoDone_ == 0 : undoDone_ == undoQueue_.size()) {
        logWarning(back ? QStringLiteral("There are no more commands to undo.")
                        : QStringLiteral("There are no more commands to redo."));
        return host_status();
    }
    picker_undo_step& step = *undoQueue_.at(back ? undoDone_ - 1 : undoDone_);
    const host_status status = back ? step.undo() : step.redo();
    if (!status)
        return melError(
            QStringLiteral("%1 failed: %2")
                .arg(back ? QLatin1String("undo") : QLatin1String("redo"), status.errorString()));
    if (back)
        --undoDone_;
    else
        ++undoDone_;
    return host_status();
}

host_status picker_embedded_host::runFileInfo(const QStringList& args, picker_mel_value* result) {
    const QString flag = args.value(0);
    if (flag == QLatin1String("-q") || flag == QLatin1String("-query")) {
        if (args.size() == 1) {
            QStringList pairs;
            for (auto entry = fileInfo_.constBegin(); entry != fileInfo_.constEnd(); ++entry)
                pairs << entry.key() << entry.value();
            *result = picker_mel_value::array(pairs);
            return host_status();
        }
        if (args.size() != 2)
            return melError(QStringLiteral("fileInfo: wrong number of arguments."));
        const auto found = fileInfo_.constFind(args.at(1));
        *result = picker_mel_value::array(found == fileInfo_.constEnd() ? QStringList()
                                                                        : QStringList{*found});
        return host_status();
    }
    if (flag == QLatin1String("-remove") || flag == QLatin1String("-rm")) {
        if (args.size() != 2)
            return melError(QStringLiteral("fileInfo: wrong number of arguments."));
        fileInfo_.remove(args.at(1));
        return host_status();
    }
    if (args.size() != 2 || flag.startsWith(QLatin1Char('-')))
        return melError(QStringLiteral("fileInfo: wrong number of arguments."));
    fileInfo_.insert(args.at(0), args.at(1));
    return host_status();
}

host_status picker_embedded_host::runFile(const QStringList& args, picker_mel_value* result) {
    // Flags as Maya's file command spells them: the ones listed here take a value, the others
    // are switches, and the one argument without a flag is the file.
    static const QStringList valued{QStringLiteral("-modified"),  QStringLiteral("-mf"),
                                    QStringLiteral("-rename"),    QStringLiteral("-rn"),
                                    QStringLiteral("-namespace"), QStringLiteral("-ns"),
                                    QStringLiteral("-type"),      QStringLiteral("-typ")};
    static const QStringList switches{
        QStringLiteral("-new"),       QStringLiteral("-n"),     QStringLiteral("-force"),
        QStringLiteral("-f"),         QStringLiteral("-open"),  QStringLiteral("-o"),
        QStringLiteral("-save"),      QStringLiteral("-s"),     QStringLiteral("-reference"),
        QStringLiteral("-r"),         QStringLiteral("-query"), QStringLiteral("-q"),
        QStringLiteral("-sceneName"), QStringLiteral("-sn")};
    QMap<QString, QString> values;
    QSet<QString> set;
    QString path;
    for (int i = 0; i < args.size(); ++i) {
        const QString& arg = args.at(i);
        const int valuedAt = valued.indexOf(arg);
        if (valuedAt >= 0) {
            if (i + 1 >= args.size())
                return melError(QStringLiteral("file: flag %1 needs a value.").arg(arg));
            values.insert(valued.at(valuedAt - valuedAt % 2), args.at(++i));
        } else if (switches.contains(arg)) {
            const int at = switches.indexOf(arg);
            set.insert(switches.at(at - at % 2));
        } else if (arg.startsWith(QLatin1Char('-'))) {
            return melError(QStringLiteral("file: invalid flag %1.").arg(arg));
        } else if (!path.isNull()) {
            return melError(QStringLiteral("file: more than one file given."));
        } else {
            path = arg;
        }
    }
    const QString type = values.value(QStringLiteral("-type"), QStringLiteral("mayaAscii"));
    if (type != QLatin1String("mayaAscii"))
        return melError(QStringLiteral("file: only mayaAscii scenes are available in this host."));
    if (set.contains(QStringLiteral("-query"))) {
        if (!set.contains(QStringLiteral("-sceneName")))
            return melError(QStringLiteral("file: only -q -sn is available in this host."));
        *result = picker_mel_value::string(scenePath_);
        return host_status();
    }
    const bool force = set.contains(QStringLiteral("-force"));
    if (set.contains(QStringLiteral("-new")) || set.contains(QStringLiteral("-open"))) {
        if (modified_ && !force)
            return melError(QStringLiteral("file: the scene has unsaved changes; use -f to "
                                           "discard them."));
        if (set.contains(QStringLiteral("-open")))
            return openFile(path);
        newScene();
        return host_status();
    }
    if (values.contains(QStringLiteral("-rename"))) {
        renamed_ = renamed_ || values.value(QStringLiteral("-rename")) != scenePath_;
        scenePath_ = values.value(QStringLiteral("-rename"));
    }
    if (set.contains(QStringLiteral("-save")))
        return saveFile();
    if (set.contains(QStringLiteral("-reference")))
        return referenceFile(values.value(QStringLiteral("-namespace")), path);
    if (!values.contains(QStringLiteral("-modified"))) {
        if (values.contains(QStringLiteral("-rename")))
            return host_status();
        return melError(QStringLiteral("file: nothing to do."));
    }
    const QString value = values.value(QStringLiteral("-modified"));
    if (value == QLatin1String("1") || value == QLatin1String("true") ||
        value == QLatin1String("on"))
        modified_ = true;
    else if (value == QLatin1String("0") || value == QLatin1String("false") ||
             value == QLatin1String("off"))
        modified_ = false;
    else
        return melError(QStringLiteral("file: invalid value for -modified: %1.").arg(value));
    return host_status();
}

host_status picker_embedded_host::openFile(const QString& path) {
    if (path.isEmpty())
        return melError(QStringLiteral("file: -open needs a file."));
    picker_ma_scene read;
    const picker_ma_result status = readMayaAscii(path, read, *files_);
    if (!status.ok())
        return melError(status.error);
    raiseEvent(QStringLiteral("deleteAll"));
    QMap<QString, QString> info;
    for (const auto& entry : read.fileInfo)
        info.insert(entry.first, entry.second);
    resetScene(read.nodes + read.referencedNodes, info);
    scenePath_ = path;
    referenceBase_ = path;
    scene_ = read;
    raiseEvent(QStringLiteral("SceneOpened"));
    return readErrors(status);
}

host_status picker_embedded_host::readErrors(const picker_ma_result& result) {
    for (const QString& warning : result.warnings)
        logWarning(warning);
    for (const QString& error : result.errors)
        logError(error);
    return result.errors.isEmpty() ? host_status() : host_status::failure(result.errors.first());
}

host_status picker_embedded_host::saveFile() {
    if (scenePath_.isEmpty())
        return melError(QStringLiteral("file: the scene has no name yet; give it one with "
                                       "file -rename."));
    // The nodes as read, and those made since; what the references brought stays theirs.
    picker_ma_scene written = scene_;
    const QSet<QString> referenced(scene_.referencedNodes.cbegin(), scene_.referencedNodes.cend());
    const QSet<QString> read(scene_.nodes.cbegin(), scene_.nodes.cend());
    for (const QString& node : nodes_) {
        if (!referenced.contains(node) && !read.contains(node))
            written.nodes.append(node);
    }
    written.fileInfo.clear();
    for (auto entry = fileInfo_.constBegin(); entry != fileInfo_.constEnd(); ++entry)
        written.fileInfo.append(qMakePair(entry.key(), entry.value()));
    // A relative reference was found beside the scene it was read with; saved somewhere else, it
    // is written where it was found.
    for (picker_ma_reference& reference : written.references) {
        if (!resolveReferencePath(reference.path, scenePath_, *files_).isEmpty())
            continue;
        const QString found = resolveReferencePath(reference.path, referenceBase_, *files_);
        if (!found.isEmpty())
            reference.path = QFileInfo(found).absoluteFilePath();
    }
    QByteArray bytes;
    QString error;
    if (!mayaAsciiBytes(written, renamed_ ? QFileInfo(scenePath_).fileName() : QString(), bytes,
                        &error) ||
        !files_->write(scenePath_, bytes, error))
        return melError(QStringLiteral("%1: %2").arg(scenePath_, error));
    // What was written is what the next save starts from.
    picker_ma_scene saved;
    parseMayaAsciiFile(bytes, scenePath_, saved);
    scene_.source = saved.source;
    scene_.nodes = saved.nodes;
    scene_.fileInfo = saved.fileInfo;
    scene_.references = written.references;
    referenceBase_ = scenePath_;
    renamed_ = false;
    modified_ = false;
    raiseEvent(QStringLiteral("SceneSaved"));
    return host_status();
}

host_status picker_embedded_host::referenceFile(const QString& ns, const QString& path) {
    if (path.isEmpty())
        return melError(QStringLiteral("file: -reference needs a file."));
    const QString name = ns.isEmpty() ? QFileInfo(path).completeBaseName() : ns;
    picker_ma_scene referenced = scene_;
    const int before = static_cast<int>(referenced.referencedNodes.size());
    const picker_ma_result status = referenceMayaAscii(name, path, scenePath_, referenced, *files_);
    if (!status.ok())
        return melError(status.error);
    for (int i = before; i < referenced.referencedNodes.size(); ++i)
        addNode(referenced.referencedNodes.at(i));
    scene_ = referenced;
    modified_ = true;
    return readErrors(status);
}
