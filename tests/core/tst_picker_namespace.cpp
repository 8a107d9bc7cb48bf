#include "picker_namespace.h"

#include <QtTest>

#include <initializer_list>

Q_DECLARE_METATYPE(buttonAttributes)

namespace {

using texts = std::initializer_list<const char*>;

QStringList list(texts items) {
    QStringList result;
    for (const char* item : items)
        result.append(QString::fromUtf8(item));
    return result;
}

QList<QStringList> rows(std::initializer_list<texts> items) {
    QList<QStringList> result;
    for (texts row : items)
        result.append(list(row));
    return result;
}

buttonAttributes button(qint32 type, qint32 api, texts sel) {
    return {QPoint(), 0, type, api, 0, 0, QString(), list(sel)};
}

buttonAttributes names(texts sel) {
    return button(buttonAttributes::Selection, buttonAttributes::Mel, sel);
}

buttonAttributes mel(const char* script) {
    return button(buttonAttributes::Command, buttonAttributes::Mel, {script});
}

QList<QStringList> sels(const button_att_list& buttons) {
    QList<QStringList> result;
    for (const buttonAttributes& att : buttons)
        result.append(att.sel);
    return result;
}

} // namespace

class tst_picker_namespace : public QObject {
    Q_OBJECT

private slots:
    // The whole round: collect the used namespaces, decide whether "bind" asks, preselect the
    // dialog's combos, take the user's final choices, and rewrite the buttons.
    void bindThroughTheDialog_data() {
        QTest::addColumn<button_att_list>("buttons");
        QTest::addColumn<QStringList>("available");
        QTest::addColumn<QStringList>("used");
        QTest::addColumn<bool>("bindAsks");
        QTest::addColumn<QStringList>("preselected");
        QTest::addColumn<QStringList>("chosen"); // empty: the preselection is accepted
        QTest::addColumn<QList<QStringList>>("rebound");

        const QStringList none;
        QTest::newRow("a:b:ctrl gives a:b and a, sorted without case")
            << button_att_list{names({"B:x", "a:b:ctrl"})} << none << list({"a", "a:b", "B"})
            << true << list({"", "", ""}) << list({"a", "a:b", "B"}) << rows({{"B:x", "a:b:ctrl"}});
        QTest::newRow("a scene without namespaces offers the root")
            << button_att_list{names({"B:x", "a:b:ctrl"})} << none << list({"a", "a:b", "B"})
            << true << list({"", "", ""}) << none << rows({{"x", "ctrl"}});
        QTest::newRow("DAG paths segment by segment, in names and scripts")
            << button_att_list{names({"|hero:grp|hero:ctrl.cv[0:3]"}),
                               mel("select \"|hero:grp|hero:hand\";")}
            << list({"villain"}) << list({"hero"}) << true << list({"villain"}) << list({"villain"})
            << rows({{"|villain:grp|villain:ctrl.cv[0:3]"},
                     {"select \"|villain:grp|villain:hand\";"}});
        QTest::newRow("colon inside brackets ignored")
            << button_att_list{names({"ns:obj.vtx[3:5]"})} << list({"ns"}) << list({"ns"}) << false
            << list({"ns"}) << list({"other"}) << rows({{"other:obj.vtx[3:5]"}});
        QTest::newRow("quoted name after // ignored until the line ends")
            << button_att_list{mel("select -cl; // \"hide:a\"\nselect \"show:b\";")} << none
            << list({"show"}) << true << list({""}) << list({"show"})
            << rows({{"select -cl; // \"hide:a\"\nselect \"show:b\";"}});
        QTest::newRow("quoted name after # ignored, in MEL too")
            << button_att_list{button(buttonAttributes::Command, buttonAttributes::Python,
                                      {"cmds.select('x') # 'hide:a'"}),
                               mel("# \"hide:b\"\r'c:d'")}
            << none << list({"c"}) << true << list({""}) << list({"c"})
            << rows({{"cmds.select('x') # 'hide:a'"}, {"# \"hide:b\"\r'c:d'"}});
        QTest::newRow("char1 finds shot3:char1, not xchar1")
            << button_att_list{names({"char1:arm"})} << list({"xchar1", "shot3", "shot3:char1"})
            << list({"char1"}) << true << list({"shot3:char1"}) << none
            << rows({{"shot3:char1:arm"}});
        QTest::newRow("empty target maps to the root")
            << button_att_list{names({"char1:arm"}), mel("select \"char1:leg\";")}
            << list({"shot3"}) << list({"char1"}) << true << list({"shot3"}) << list({""})
            << rows({{"arm"}, {"select \"leg\";"}});
        QTest::newRow("later from entry wins")
            << button_att_list{names({"a:b:ctrl", "a:x"})} << none << list({"a", "a:b"}) << true
            << list({"", ""}) << list({"n", "m"}) << rows({{"m:ctrl", "n:x"}});
        QTest::newRow("char1: leaves char10: alone")
            << button_att_list{names({"char1:arm", "char10:leg"})} << none
            << list({"char1", "char10"}) << true << list({"", ""}) << list({"c2", "char10"})
            << rows({{"c2:arm", "char10:leg"}});
        QTest::newRow("blank-before-name quirk: second name's namespace matches nothing")
            << button_att_list{mel("select \"a:x b:y\";")} << list({"a", "b"}) << list({" b", "a"})
            << true << list({"a", "a"}) << list({"c", "a"}) << rows({{"select \"a:x b:y\";"}});
    }

    void bindThroughTheDialog() {
        QFETCH(button_att_list, buttons);
        QFETCH(QStringList, available);
        QFETCH(QStringList, used);
        QFETCH(bool, bindAsks);
        QFETCH(QStringList, preselected);
        QFETCH(QStringList, chosen);
        QFETCH(QList<QStringList>, rebound);

        QCOMPARE(collectCurrentNamespace(buttons), used);
        QCOMPARE(rebindNeedsDialog(used, available, false), bindAsks);
        QVERIFY(rebindNeedsDialog(used, available, true));

        QStringList initial;
        for (const QString& ns : used) {
            const namespace_choice choice = namespaceChoice(ns, available);
            initial.append(choice.items.value(choice.current));
            // Whatever is preselected, the root and every scene namespace stay on offer.
            QVERIFY(choice.items.contains(QString()));
            for (const QString& scene : available)
                QVERIFY(choice.items.contains(scene));
        }
        QCOMPARE(initial, preselected);

        rebindButtons(buttons, buildRebindMap(used, chosen.isEmpty() ? initial : chosen));
        QCOMPARE(sels(buttons), rebound);
    }

    // The rewriters on their own, with prefix lists as the dialog hands them over.
    void rewrite_data() {
        QTest::addColumn<button_att_list>("buttons");
        QTest::addColumn<QStringList>("from");
        QTest::addColumn<QStringList>("to");
        QTest::addColumn<QList<QStringList>>("rebound");

        const QStringList oldNs = list({"old:"});
        const QStringList newNs = list({"new:"});
        QTest::newRow("prefix only at the start of a name")
            << button_att_list{names({"x:old:arm", "old:arm", "old:old:arm"})} << oldNs << newNs
            << rows({{"x:old:arm", "new:arm", "new:old:arm"}});
        QTest::newRow("script runs end at every other character")
            << button_att_list{mel("select old:a|old:b;x=old:c[0];\u00e9old:d")} << oldNs << newNs
            << rows({{"select new:a|new:b;x=new:c[0];\u00e9new:d"}});
        // Every edge of the name-character ranges: none of these is "old:".
        QTest::newRow("a name character before it: another name")
            << button_att_list{mel("aold:1 zold:2 Aold:3 Zold:4 0old:5 9old:6 .old:7 _old:8 "
                                   "@old:9")}
            << oldNs << newNs
            << rows({{"aold:1 zold:2 Aold:3 Zold:4 0old:5 9old:6 .old:7 _old:8 @new:9"}});
        QTest::newRow("only a command button's first element")
            << button_att_list{button(buttonAttributes::Command, buttonAttributes::Python,
                                      {"'old:a'", "old:b"})}
            << oldNs << newNs << rows({{"'new:a'", "old:b"}});
        QTest::newRow("to the root and into a deeper namespace")
            << button_att_list{names({"a:x", "b:y"}), mel("\"a:z b:w\"")} << list({"a:", "b:"})
            << list({"", "s:b:"}) << rows({{"x", "s:b:y"}, {"\"z s:b:w\""}});
    }

    void rewrite() {
        QFETCH(button_att_list, buttons);
        QFETCH(QStringList, from);
        QFETCH(QStringList, to);
        QFETCH(QList<QStringList>, rebound);
        rebindButtons(buttons, rebind_map{from, to});
        QCOMPARE(sels(buttons), rebound);
    }
};

QTEST_GUILESS_MAIN(tst_picker_namespace)
#include "tst_picker_namespace.moc"
