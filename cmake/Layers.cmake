# The layer table: every folder of src/, one line each, each below the folders that use it.
#   USES     the folders it may use besides itself. The build links exactly these; the layer check lets its
#            files include exactly these. Only folders on earlier lines may stand here.
#   WINDOWS  its window files, a regular expression on the base name: they alone may include QtWidgets and
#            QScintilla, and their headers are window headers. Without it the folder is logic throughout.
#   PRIVATE  its window files are implementations behind logic interfaces and need QtWidgets alone; the
#            folders above it don't get QtWidgets through it.
# Read by CMakeLists.txt and cmake/CheckLayers.cmake through cmake/ReadLayers.cmake.

layer(platform                                                    WINDOWS "^(Qt|Posix)" PRIVATE)
layer(core        USES platform)
layer(statusbar   USES core platform                              WINDOWS "^(StatusPicture|PixmapTarget)\\." PRIVATE)
layer(devices     USES core platform)
layer(language    USES core platform)
layer(document    USES language devices statusbar core platform   WINDOWS "^(frmEditor|SourceView|SourceLexer|FindDialog|Document|Positions|EditorColors)")
layer(compile     USES document devices core platform             WINDOWS "^(frm|CompilerScreen|CompileSession)")
layer(programmer  USES document devices core platform             WINDOWS "^(frm|ProgrammerRun|ProgrammerOutput)")
layer(dialogs     USES document devices core platform             WINDOWS "^(frm|MyAbout)")
layer(terminal    USES document devices core platform             WINDOWS "^SerialTerminal")
layer(shell       USES compile programmer dialogs terminal document language devices statusbar core platform  WINDOWS "^(MDIMain|ToolBars|EditorRegistry|CodeExplorer)")
