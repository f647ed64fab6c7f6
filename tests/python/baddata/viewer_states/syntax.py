def createViewerStateTemplate(:
    pass
