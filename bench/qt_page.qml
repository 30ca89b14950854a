import QtQuick

// A notch of the wheel moves the page as the guide does: a quarter of the screen in 0.3 seconds,
// easing out.
Rectangle {
    color: "black"

    WheelHandler {
        onWheel: event => {
            const end = page.contentHeight - page.height
            const from = motion.running ? motion.to : page.contentY
            motion.to = Math.max(0, Math.min(end, from - Math.sign(event.angleDelta.y) * 90))
            motion.restart()
        }
    }
    NumberAnimation {
        id: motion
        target: page
        property: "contentY"
        duration: 300
        easing.type: Easing.OutQuad
    }
    Flickable {
        id: page
        anchors.fill: parent
        contentHeight: column.height + 160

        Column {
            id: column
            width: parent.width

            Image {
                source: helpImage
                width: 360
                height: 246

                Image {
                    source: arrowImage
                    width: 96
                    height: 96
                    anchors.right: parent.right
                    y: 46
                }
            }
            Text {
                text: helpText
                color: "white"
                width: 260
                wrapMode: Text.Wrap
                horizontalAlignment: Text.AlignHCenter
                anchors.horizontalCenter: parent.horizontalCenter
                font.pixelSize: 28
            }
        }
    }
}
