# Loads the TalvoraPicker plug-in once Maya has started. Maya runs the userSetup.py of every
# module, batch sessions included; the plug-in keeps to what works without an interface there.
import maya.cmds


def _load_talvora_picker():
    # Checked when the deferred call runs: a user's own start-up may have loaded it by then.
    if maya.cmds.pluginInfo("TalvoraPicker", query=True, loaded=True):
        return
    try:
        maya.cmds.loadPlugin("TalvoraPicker", quiet=True)
    except RuntimeError as error:
        maya.cmds.warning("TalvoraPicker could not be loaded: {}".format(error))


maya.cmds.evalDeferred(_load_talvora_picker)
