"""A viewer state written in Python: measures the distance between two clicks.

gzsh registers every viewer_states/*.py file of its search path at start-up by calling the
file's createViewerStateTemplate(). gzsh has no viewport, so the state's callbacks are
carried for a viewer to call; `statels` shows the state.
"""
import viewerstate.interface as vsi


class Measure:
    def __init__(self, state_name, scene_viewer):
        self.state_name = state_name
        self.points = []

    def onMouseEvent(self, kwargs):
        self.points = (self.points + [kwargs["position"]])[-2:]
        return True


def createViewerStateTemplate():
    template = vsi.createViewerStateTemplate(
        "measure", "Measure", category="Sop", factory=Measure)
    template.bind_parameter("units", type="string", default="m", label="Units")
    template.bind_volatile_hotkeys("m")
    template.set_op_independent()
    return template
