import viewerhandle.interface as vhi


def createViewerHandleTemplate():
    template = vhi.createViewerHandleTemplate("xform", "Clashes with a built-in")
    template.bind_parameter("tx")
    return template
