"""A viewer handle written in Python: a two-way slider with a position and a scale.

gzsh registers every viewer_handles/*.py file of its search path at start-up by calling
the file's createViewerHandleTemplate(). Try it with

    gzsh -p examples -c 'omls slider2d'
"""
import viewerhandle.interface as vhi


def createViewerHandleTemplate():
    template = vhi.createViewerHandleTemplate(
        "slider2d", "Slider 2D", network_types=["sop", "object"],
        help="Slides a point in the plane and scales it.")
    # A two-component parameter gives the handle parameters posx and posy.
    template.bind_parameter("pos", components=2, label="Position")
    template.bind_parameter("scale", label="Scale", default=1.0)
    return template
