import viewerhandle.interface as vhi


def createViewerHandleTemplate():
    template = vhi.createViewerHandleTemplate("badparms", "Bad parameters")
    template.bind_parameter("t", components=3)
    template.bind_parameter("t", components=2)
    return template
