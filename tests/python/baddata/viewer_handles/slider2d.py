raise RuntimeError("the first directory's file of a name wins, so this never runs")
