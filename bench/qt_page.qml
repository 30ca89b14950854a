import QtQuick

Rectangle {
    color: "black"

    Flickable {
        anchors.fill: parent
        contentHeight: column.height

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
